--TEST--
Conditional sections decided by a value: truth, "visible", comparison; at the top level and in sections
--FILE--
<?php
require __DIR__ . '/../helper.inc';

/** Shown with "optional" is hidden with "!optional", as constant and as element. */
function condition(mixed $value, string $comparison, bool $isShown): array
{
    $argument = $comparison === '' ? '' : " $comparison";
    $template = "{optional v$argument}yes{/optional}{!optional v$argument}no{/optional}"
        . "{dynamic r,rows}{optional *::v$argument},yes{/optional}{!optional r::*::v$argument},no{/optional}{/dynamic}";
    return [$template, ['v' => $value, 'rows' => [['v' => $value]]], $isShown ? 'yes,yes' : 'no,no'];
}

/** @param array $groups by group, what is shown and what is hidden: values with their comparisons */
function conditions(array $groups): array
{
    foreach ($groups as $group => [$shown, $hidden]) {
        foreach ([[$shown, true], [$hidden, false]] as [$pairs, $isShown]) {
            foreach ($pairs as [$value, $comparison]) {
                $cases["$group: " . printable($value) . " and $comparison"] = condition($value, $comparison, $isShown);
            }
        }
    }
    return $cases;
}

$truth = fn (array $values) => array_map(fn ($value) => [$value, ''], $values);
$text = new Doing(fn () => '5');
check(conditions([
    'truth' => [$truth([-1, '0.0', "\0", true, NAN, [0], new stdClass()]), $truth([0, '', '0', null, false, 0.0, []])],
    'visible decides, at the first level and of arrays only' => [
        $truth([['visible' => true], ['visible' => ['visible' => false]], ['Visible' => false], (object) ['visible' => false]]),
        $truth([['visible' => false, 1, 2], ['visible' => null, 1], ['visible' => [], 1]]),
    ],
    'a text is compared byte by byte, up to its NUL' => [
        [['admin', 'admin'], ['x y', 'x y'], ['  b', '  b'], ["admin\0x", 'admin'], ['5', '5']],
        [['admin', 'admi'], ['Admin', 'admin'], ['b', '  b'], ["a\0b", "a\0b"], ['5', '05']],
    ],
    'what stands between the outermost quotes counts' => [
        [['admin', "'admin'"], ['x y', "'x y'"], ['', "''"], ["it's", "it's"], ['ab', "x'ab'y"], ["a'b", "'a'b'"]],
        [['x', "''"]],
    ],
    'an integer is compared with the digits that come first, without any with zero' => [
        [[5, '5'], [5, '0005'], [12, '12abc'], [12, '12.9'], [12, "'12'"], [12, "12'"], [-7, '-7'],
            [0, '-0'], [0, '+12'], [0, '-'], [0, 'abc'], [0, "''"], [0, '0x10']],
        [[5, '6'], [8, '010'], [12, '+12'], [12, ' 12']],
    ],
    'out of range is zero' => [
        [[PHP_INT_MAX, '9223372036854775807'], [PHP_INT_MIN, '-9223372036854775808'],
            [0, '9223372036854775808'], [0, '-9223372036854775809']],
        [[PHP_INT_MAX, '9223372036854775808']],
    ],
    'nothing else is ever equal' => [
        [],
        [[5.0, '5'], [null, "''"], [['5'], 'Array'], [['visible' => true], '1'], [$text, '5']],
    ],
]));

// A boolean is compared through the integer that it was made from.
$cases = [];
foreach ([0, 1, 5] as $integer) {
    $boolean = $integer;
    settype($boolean, 'bool');
    foreach (['0', "'0'"] as $comparison) {
        $cases["boolean from $integer and $comparison"] = condition($boolean, $comparison, $integer === 0);
    }
    foreach (['1', '00', 'true', "''"] as $comparison) {
        $cases["boolean from $integer and $comparison"] = condition($boolean, $comparison, $integer !== 0);
    }
}

// References in the data count for truth, never for comparison.
$number = 5;
$array = ['visible' => false, 1];
$zero = 0;
$linked = ['n' => &$number, 'a' => &$array, 'inner' => ['visible' => &$zero]];
check($cases + [
    'missing' => ['{optional v}yes{/optional}{!optional v}no{/optional}', [], 'no'],
    'missing, compared' => ['{optional v 0}yes{/optional}{!optional v 0}no{/optional}', [], 'no'],
    'missing inside of a text' => ['{optional v::x}yes{/optional}{!optional v::x}no{/optional}', ['v' => 'x'], 'no'],

    'reference, truth' => ['{optional n}yes{/optional}', $linked, 'yes'],
    'reference, comparison' => ['{optional n 5}yes{/optional}{!optional n 5}no{/optional}', $linked, 'no'],
    'reference to an array: visible is not looked at' => ['{optional a}yes{/optional}', $linked, 'yes'],
    'reference as visible' => ['{optional inner}yes{/optional}{!optional inner}no{/optional}', $linked, 'no'],

    // The argument is split at its first blank (0x20), nothing else.
    'a tab splits nothing' => ["{optional v\tx}yes{/optional}", ["v\tx" => 1, 'v' => 0], 'yes'],
    'a blank behind a tab splits' => ["{optional v\t x}yes{/optional}", ["v\t" => 'x'], 'yes'],
    'no argument' => ['{optional}yes{/optional}', ['' => 1], 'yes'],
    'trailing blanks are gone' => ["{optional v   }yes{/optional}", ['v' => 1], 'yes'],
]);
--EXPECT--
as expected
as expected

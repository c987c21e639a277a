--TEST--
Conditional sections decided by the top level of the data: truth, "visible", comparison
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$object = new stdClass();
$array = ['visible' => false, 1];
$number = 5;

/** Shown with "optional" is hidden with "!optional", as constant and as element. */
function condition(mixed $value, string $comparison, bool $isShown): array
{
    $argument = $comparison === '' ? '' : " $comparison";
    $template = "{optional v$argument}yes{/optional}{!optional v$argument}no{/optional}"
        . "{dynamic r,rows}{optional *::v$argument},yes{/optional}{!optional r::*::v$argument},no{/optional}{/dynamic}";
    return [$template, ['v' => $value, 'rows' => [['v' => $value]]], $isShown ? 'yes,yes' : 'no,no'];
}

check([
    'missing' => ['{optional v}yes{/optional}{!optional v}no{/optional}', [], 'no'],
    'missing, compared' => ['{optional v 0}yes{/optional}{!optional v 0}no{/optional}', [], 'no'],
    'missing inside of a text' => ['{optional v::x}yes{/optional}{!optional v::x}no{/optional}', ['v' => 'x'], 'no'],

    // no comparison: truth
    'zero' => condition(0, '', false),
    'one' => condition(-1, '', true),
    'empty text' => condition('', '', false),
    'text 0' => condition('0', '', false),
    'text 0.0' => condition('0.0', '', true),
    'a NUL' => condition("\0", '', true),
    'null' => condition(null, '', false),
    'true' => condition(true, '', true),
    'false' => condition(false, '', false),
    'float zero' => condition(0.0, '', false),
    'not a number' => condition(NAN, '', true),
    'empty array' => condition([], '', false),
    'array' => condition([0], '', true),
    'object' => condition($object, '', true),
    'visible decides' => condition(['visible' => false, 1, 2], '', false),
    'visible true' => condition(['visible' => true], '', true),
    'visible null' => condition(['visible' => null, 1], '', false),
    'visible is an empty array' => condition(['visible' => [], 1], '', false),
    'visible is looked at once, not further' => condition(['visible' => ['visible' => false]], '', true),
    'Visible is another key' => condition(['Visible' => false], '', true),
    'visible of an object is not looked at' => condition((object) ['visible' => false], '', true),

    // comparison
    'text equal' => condition('admin', 'admin', true),
    'text differs' => condition('admin', 'admi', false),
    'text differs in case' => condition('Admin', 'admin', false),
    'quoted' => condition('admin', "'admin'", true),
    'quoted with blanks' => condition('x y', "'x y'", true),
    'unquoted with blanks' => condition('x y', 'x y', true),
    'quoted empty' => condition('', "''", true),
    'quoted empty, text there' => condition('x', "''", false),
    'a single quote stays' => condition("it's", "it's", true),
    'outside of the quotes does not count' => condition('ab', "x'ab'y", true),
    'the outermost quotes count' => condition("a'b", "'a'b'", true),
    'two blanks more' => condition('b', '  b', false),
    'two blanks more in the value' => condition('  b', '  b', true),
    'up to the NUL' => condition("admin\0x", 'admin', true),
    'a NUL in the comparison' => condition("a\0b", "a\0b", false),
    'text number' => condition('5', '5', true),
    'text number in another form' => condition('5', '05', false),

    'integer equal' => condition(5, '5', true),
    'integer differs' => condition(5, '6', false),
    'integer with leading zeros' => condition(5, '0005', true),
    'integer, no octal' => condition(8, '010', false),
    'integer and rest' => condition(12, '12abc', true),
    'integer and fraction' => condition(12, '12.9', true),
    'integer, quoted' => condition(12, "'12'", true),
    'integer, half quoted' => condition(12, "12'", true),
    'negative' => condition(-7, '-7', true),
    'minus zero' => condition(0, '-0', true),
    'plus is no digit' => condition(12, '+12', false),
    'plus is zero' => condition(0, '+12', true),
    'blank is no digit' => condition(12, ' 12', false),
    'minus alone is zero' => condition(0, '-', true),
    'letters are zero' => condition(0, 'abc', true),
    'quoted nothing is zero' => condition(0, "''", true),
    'largest' => condition(PHP_INT_MAX, '9223372036854775807', true),
    'out of range is zero' => condition(0, '9223372036854775808', true),
    'out of range is not the largest' => condition(PHP_INT_MAX, '9223372036854775808', false),
    'smallest' => condition(PHP_INT_MIN, '-9223372036854775808', true),
    'below the smallest is zero' => condition(0, '-9223372036854775809', true),
    'no hexadecimal' => condition(0, '0x10', true),

    'float never' => condition(5.0, '5', false),
    'null never' => condition(null, "''", false),
    'array never' => condition(['5'], 'Array', false),
    'array with visible never' => condition(['visible' => true], '1', false),
    'object never' => condition(new class { public function __toString() { return '5'; } }, '5', false),

    // the argument is split at its first blank (0x20), nothing else
    'a tab splits nothing' => ["{optional v\tx}yes{/optional}", ["v\tx" => 1, 'v' => 0], 'yes'],
    'a blank behind a tab splits' => ["{optional v\t x}yes{/optional}", ["v\t" => 'x'], 'yes'],
    'no argument' => ['{optional}yes{/optional}', ['' => 1], 'yes'],
    'trailing blanks are gone' => ["{optional v   }yes{/optional}", ['v' => 1], 'yes'],
]);

// The data of the caller may hold references: they count for truth, never for comparison.
$linked = ['n' => &$number, 'a' => &$array, 'inner' => ['visible' => &$array[0]]];
$array['visible'] = false;
$array[0] = 0;
check([
    'reference, truth' => ['{optional n}yes{/optional}', $linked, 'yes'],
    'reference, comparison' => ['{optional n 5}yes{/optional}{!optional n 5}no{/optional}', $linked, 'no'],
    'reference to an array: visible is not looked at' => ['{optional a}yes{/optional}', $linked, 'yes'],
    'reference as visible' => ['{optional inner}yes{/optional}{!optional inner}no{/optional}', $linked, 'no'],
]);

// A boolean is compared through the integer that it was made from.
$checks = [];
foreach ([0, 1, 5] as $integer) {
    foreach (['0' => $integer === 0, '1' => $integer !== 0, '00' => $integer !== 0, 'true' => $integer !== 0, "'0'" => $integer === 0, "''" => $integer !== 0] as $comparison => $isShown) {
        $boolean = $integer;
        settype($boolean, 'bool');
        $checks["boolean from $integer and $comparison"] = condition($boolean, (string) $comparison, $isShown);
    }
}
check($checks);
?>
--EXPECT--
text: as expected
file: as expected
text: as expected
file: as expected
text: as expected
file: as expected

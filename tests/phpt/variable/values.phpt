--TEST--
Values print as PHP converts them, as constants and as elements, up to a NUL byte
--INI--
precision=14
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$text = new Doing(fn () => "an \0object");
enum Suit
{
    case Hearts;
}

$values = [
    'text' => ['plain', 'plain'],
    'numeric text' => ['007', '007'],
    'empty' => ['', ''],
    'NUL inside' => ["before\0after", 'before'],
    'NUL first' => ["\0after", ''],
    'every other byte' => [implode('', array_map('chr', range(1, 255))), implode('', array_map('chr', range(1, 255)))],
    'true' => [true, '1'],
    'false' => [false, ''],
    'null' => [null, ''],
    'zero' => [0, '0'],
    'smallest' => [PHP_INT_MIN, '-9223372036854775808'],
    'float' => [0.1 + 0.2, '0.3'],
    'whole float' => [5.0, '5'],
    'large float' => [1.5e300, '1.5E+300'],
    'negative zero' => [-0.0, '-0'],
    'infinity' => [-INF, '-INF'],
    'not a number' => [NAN, 'NAN'],
    'Stringable' => [$text, 'an '],
    'array' => [['x'], 'Array', 'Array to string conversion'],
    'empty array' => [[], 'Array', 'Array to string conversion'],
];

$cases = [];
foreach ($values as $kind => [$value, $expected]) {
    $warnings = array_slice($values[$kind], 2);
    $plain = ['v' => $value, 'rows' => [['v' => $value]]];
    $linked = ['v' => &$value, 'rows' => [['v' => &$value]]];
    foreach (['plain' => $plain, 'reference' => $linked] as $how => $data) {
        $cases["$kind, $how, constant"] = ['[{v}]', $data, "[$expected]", ...$warnings];
        $cases["$kind, $how, element"] = ['[{dynamic rows}{*::v}{/dynamic}]', $data, "[$expected]", ...$warnings];
        $cases["$kind, $how, fallback"] = ["[{dynamic rows}{*::x v 'default'}{/dynamic}]", $data, "[$expected]", ...$warnings];
    }
    unset($value);
}
// A text ends at its first NUL, wherever that is.
for ($length = 0; $length <= 40; $length++) {
    $text = substr('A text & more of it, <b>longer</b> than any other value here', 0, $length);
    $values = [$text];
    for ($nul = 0; $nul < $length; $nul++) {
        $values[] = substr_replace($text, "\0", $nul, 1);
        $values[] = substr_replace($values[1], "\0", $nul, 1);
    }
    $expected = array_map(fn (string $value): string => strstr("$value\0", "\0", true), $values);
    $cases["NUL in $length bytes"] = [
        '{dynamic list}{*};{/dynamic}{dynamic list}{htmlspecialchars *};{/dynamic}',
        ['list' => $values],
        implode(array_map(fn (string $text): string => "$text;", [...$expected, ...array_map(htmlspecialchars(...), $expected)])),
    ];
}
check($cases, ['text']);

// What has no text makes PHP throw, and the call is over.
foreach (['stdClass' => new stdClass(), 'Suit' => Suit::Hearts, 'Closure' => fn () => 1] as $class => $value) {
    foreach (['{v}', '{dynamic rows}{*}{/dynamic}', '{dynamic rows}{*::x v}{/dynamic}', '{dynamic rows}{addslashes *}{/dynamic}'] as $template) {
        $seen = outcome($template, ['v' => $value, 'rows' => [$value]]);
        if ($seen !== ["Error: Object of class $class could not be converted to string"]) {
            echo "$class in $template: ", printable($seen), "\n";
        }
    }
}
$handle = fopen('php://memory', 'r');
var_dump(outcome('{v}{dynamic rows}{*}{/dynamic}', ['v' => $handle, 'rows' => [$handle]]) === [str_repeat((string) $handle, 2)]);
--EXPECT--
as expected
bool(true)

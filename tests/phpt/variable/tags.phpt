--TEST--
Variable tags: alternatives in order, a quoted default, or the tag itself
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$data = ['a' => 'A', 'b' => 'B', 'empty' => '', 'null' => null, 'rows' => [['n' => 'one'], ['m' => 'two']]];
$second = fn (string $content) => "Variable block bad parameter '$content': could not find second ' as the last character in <FILE>";
$forbidden = fn (string $content) => "Variable block bad parameter '$content': ' is forbidden in variable in <FILE>";

check([
    'found, printed as it is' => ['{html}', ['html' => "<b title=\"x\">'&amp;'</b>"], "<b title=\"x\">'&amp;'</b>"],
    'every blank separates' => ["{x\ty\nz\vx\fy\rb}", $data, 'B'],
    'a byte above 127 is no blank' => ["{x\xA0b\x85a}", $data, "{x\xA0b\x85a}"],

    'two quoted texts are one' => ["{x 'x' 'y'}", $data, "x' 'y"],
    'default without blank before it' => ["{x'd'}", $data, null, $forbidden("x'd'")],
    'a newline and bytes in the default' => ["{x 'a\nb\0c\xFF'}", $data, "a\nb\0c\xFF"],
    'a section in the default is text' => ["{x '::*::*'}", $data, '::*::*'],

    'quotes are read before the names are looked up' => ["{a b'}", $data, null, $forbidden("a b'")],
    'quotes are read before references are' => ["{a:: b'}", $data, null, $forbidden("a:: b'")],

    'in a section: empty counts as found' => ["{dynamic r,e}[{*::v 'default'}{* 'default'}]{/dynamic}",
        ['e' => [['v' => ''], ['v' => null], ['v' => false]]], '[Array][Array][Array]',
        'Array to string conversion', 'Array to string conversion', 'Array to string conversion'],

    // Names behind the one that decides are read only when their turn comes.
    'never reached' => ['{dynamic r,rows}{[*] a::}{/dynamic}', $data, '01'],
    'reached for the second element' => ['{dynamic r,rows}{*::n a::}{/dynamic}', $data, null,
        "Bad formated parameter'a::': too many : in <FILE>"],
    'reached in a section that never repeats' => ['{dynamic r,none}{* a::}{/dynamic}', ['none' => []], ''],
]);
--EXPECT--
as expected

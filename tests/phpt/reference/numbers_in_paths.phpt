--TEST--
Only the canonical decimal form of an unsigned number is an index
--FILE--
<?php
require __DIR__ . '/../helper.inc';

// Keys that are text to a path, and those that are numbers, with what the list has there.
$texts = ['05' => 'text 05', '0x5' => 'text 0x5', '+5' => 'text +5', '5.0' => 'text 5.0', '-0' => 'text -0', '1e1' => 'text 1e1',
    '18446744073709551616' => 'text 2^64', '99999999999999999999999' => 'text huge', "5\0" => 'nul'];
$numbers = ['0' => 'zero', '5' => 'five', '9223372036854775807' => 'max', '9223372036854775808' => 'min', '18446744073709551615' => 'minus one'];
$nothing = ['7', '00', '-1', '-9223372036854775808'];

$list = [0 => 'zero', 5 => 'five', -1 => 'minus one', PHP_INT_MAX => 'max', PHP_INT_MIN => 'min'] + $texts;
$data = ['l' => $list, 'o' => ['p' => (object) ['0' => 'property', 'k' => 'v']], 'storage' => new ArrayObject(['stored'])] + $list;
$cases = [];
foreach ($texts + $numbers + array_fill_keys($nothing, 'none') as $key => $text) {
    $cases["in a list: $key"] = ["{l::$key 'none'}", $data, $text];
    // At the root a number is never found, a text is.
    $cases["at the root: $key"] = ['{' . $key . " 'none'}", $data, $texts[$key] ?? 'none'];
}
check($cases, ['text']);

check([
    'the first step of an escaping tag' => ['{addslashes 0}|{addslashes l::0}', $data, '|zero'],
    'a condition at the root' => ['{optional 0}shown{/optional}{!optional 0}hidden{/optional}', $data, 'hidden'],
    'a section at the root' => ['{dynamic r,0}x{/dynamic}', [[1, 2]], ''],
    'a blank makes it a text' => ['{addslashes l::5}{dynamic n, 5}x{/dynamic}', $data + [' 5' => ['a']], 'fivex'],
    'an object ends a path' => ['{o::p::k}{o::p::0}{storage::0}', $data, '{o::p::k}{o::p::0}{storage::0}'],
    'a text ends a path' => ['{l::5::0}', $data, '{l::5::0}'],
    'index into the element' => ['{dynamic r,rows}{*::0}{r::*::1}{/dynamic}', ['rows' => [['a', 'b'], 'text', ['c']]], 'abc'],
    'an object as element has properties, and those have no index' => ['{dynamic r,rows}[{*::0}{*::k}]{/dynamic}',
        ['rows' => [(object) ['zero', 'k' => 'v'], new ArrayObject(['zero'])]], '[][]'],
]);
--EXPECT--
as expected
as expected

--TEST--
Conditional sections decided for each element: by value, by key, by the section that is named
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$rows = [
    ['n' => 'a', 'flag' => 1, 'role' => 'admin'],
    ['n' => 'b', 'flag' => 0, 'role' => 'user'],
    ['n' => 'c'],
    ['n' => 'd', 'flag' => ['visible' => false]],
];
$data = ['rows' => $rows, 'list' => [10, 20, 30, 40], 'map' => ['a' => 1, "'a'" => 2, '' => 3, ' b' => 4, -1 => 5],
    'v' => 1, 'outer' => ['x' => ['in' => [1, 2]], 'y' => ['in' => [3]]]];
$of = fn (string $body) => "{dynamic row,rows}$body{/dynamic}";

check([
    'the element itself' => ['{dynamic list}{optional * 30}{[*]}{/optional}{/dynamic}', $data, '2'],

    'quotes belong to the key' => ["{dynamic map}{optional [*] 'a'}{*}{/optional}{/dynamic}", $data, '2'],
    'empty key' => ['{dynamic map}{optional [*]}{*}{/optional}{/dynamic}', $data, '3'],
    'blanks belong to the key' => ['{dynamic map}{optional [*]  b}{*}{/optional}{/dynamic}', $data, '4'],
    'a key is compared whole, NUL included' => ["{dynamic m}{optional [*] k}no{/optional}{optional [*] k\0y}yes{/optional}{/dynamic}",
        ['m' => ["k\0y" => 1]], 'yes'],
    'negative key' => ['{dynamic map}{optional [*] -1}no{/optional}{optional [*] 18446744073709551615}{*}{/optional}{/dynamic}', $data, '5'],

    'the body sees the element, not what was tested' => [$of('{optional *::role}{*}{/optional}'), ['rows' => [['role' => 1]]], 'Array',
        'Array to string conversion'],

    'a section that is closed already' => [$of('') . '{!optional row::*::n}no{/optional}', $data, ''],
]);
--EXPECT--
as expected

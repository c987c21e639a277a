--TEST--
Repeated sections: order, keys, names, "num", and what is not repeated
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$data = [
    'list' => ['x', 'y', 'z'],
    'map' => ['a' => 1, 5 => 2, 'b' => 3],
    'holes' => array_filter([1, 0, 2, 0, 3, 0]),
    'object' => (object) ['a' => 1],
    'keys' => [-1 => 'a', PHP_INT_MIN => 'b', PHP_INT_MAX => 'c', '' => 'd', '05' => 'e', "k\0ey" => 'f', 'é' => 'g'],
    'num' => ['num' => [1, 2], 'x' => 3],
    'num of num' => ['num' => ['num' => [7], 8]],
    'num object' => ['num' => (object) ['a' => 1], 'x' => 3],
    ' spaced' => ['s'],
    'b,c' => ['comma'],
];
$each = '{r::[*]}={r::*};{/dynamic}';

// Rows whose key is a string of their own, as a decoder makes it; one has lost it again.
$rows = array_map(static fn (int $i): array => [implode('', ['na', 'me']) => "n$i", 'other' => $i], [1, 2, 3, 4]);
unset($rows[1]['name']);
$rows[2] = ['other' => 3, 'name' => 'n3', 'mane' => 'no'];
$data['rows'] = $rows;

check([
    'a list, reversed' => ['{rdynamic r,list}{r::[*]}={r::*};{/rdynamic}', $data, '2=z;1=y;0=x;'],
    'keys are unsigned, and text up to a NUL' => ["{dynamic r,keys}$each", $data,
        '18446744073709551615=a;9223372036854775808=b;9223372036854775807=c;=d;05=e;k=f;é=g;'],

    'a list with holes' => ["{dynamic r,holes}$each", $data, '0=1;2=2;4=3;'],
    'keys of their own' => ["{dynamic r,rows}{r::*::name 'none'},{r::*::other};{/dynamic}", $data, 'n1,1;none,2;n3,3;n4,4;'],
    'an object' => ["<{dynamic r,object}$each>", $data, '<>'],

    'num' => ["{dynamic r,num}$each", $data, '0=1;1=2;'],
    'num is looked up once' => ['{dynamic r,num of num}{r::[*]};{/dynamic}', $data, 'num;0;'],
    'num, an object' => ["<{dynamic r,num object}$each>", $data, '<>'],

    'nothing is trimmed at the comma' => ['{dynamic r, spaced}{r::*}{/dynamic}{dynamic r,spaced}no{/dynamic}', $data, 's'],
    'the first comma counts' => ['{dynamic a,b,list}no{/dynamic}{dynamic a,b,c}{*}{/dynamic}', $data, 'comma'],
    'a blank in the name' => ['{dynamic r ,list}{addslashes r ::*}{r::*}{/dynamic}', $data, 'xyz'],
    'an empty name may repeat' => ['{dynamic ,list}{dynamic ,map}{*}{/dynamic}{/dynamic}', $data, '123123123'],

    'name in use comes before the reference' => ['{dynamic row,list}{dynamic row,a::}{/dynamic}{/dynamic}', $data, null,
        "Dynamic block bad parameter 'a::': namespace is used already in <FILE>"],
    'name of a relative section is not' => ['{dynamic row,*::x}{dynamic row,list}{*}{/dynamic}{/dynamic}.', $data, null,
        "Dynamic block bad parameter 'list': namespace is used already in <FILE>"],
    'name in use, no argument' => ['{dynamic x,list}{rdynamic x,}{/rdynamic}{/dynamic}', $data, null,
        "Dynamic block bad parameter '': namespace is used already in <FILE>"],
    'the empty key is no array' => ['{rdynamic}{/rdynamic}', ['' => 'text'], null, "Dynamic block bad parameter '': no parameter found in <FILE>"],
]);
--EXPECT--
as expected

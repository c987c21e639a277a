--TEST--
Repeated sections: order, keys, names, "num", and what is not repeated
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$data = [
    'list' => ['x', 'y', 'z'],
    'map' => ['a' => 1, 5 => 2, 'b' => 3],
    'holes' => array_filter([1, 0, 2, 0, 3, 0]),
    'emptied' => array_filter([0, 0]),
    'empty' => [],
    'text' => 'abc',
    'numeric' => 3,
    'null' => null,
    'object' => (object) ['a' => 1],
    'keys' => [-1 => 'a', PHP_INT_MIN => 'b', PHP_INT_MAX => 'c', '' => 'd', '05' => 'e', "k\0ey" => 'f', 'é' => 'g'],
    'num' => ['num' => [1, 2], 'x' => 3],
    'num of num' => ['num' => ['num' => [7], 8]],
    'num empty' => ['num' => [], 'x' => 3],
    'num text' => ['num' => 'abc', 'x' => 3],
    'num null' => ['num' => null, 'x' => 3],
    'num object' => ['num' => (object) ['a' => 1], 'x' => 3],
    ' spaced' => ['s'],
    'a,b' => ['comma'],
    'b,list' => ['no'],
    'v' => 'V',
];
$each = '{r::[*]}={r::*};{/dynamic}';

check([
    'a list' => ["{dynamic r,list}$each", $data, '0=x;1=y;2=z;'],
    'a list, reversed' => ['{rdynamic r,list}{r::[*]}={r::*};{/rdynamic}', $data, '2=z;1=y;0=x;'],
    'mixed keys' => ["{dynamic r,map}$each", $data, 'a=1;5=2;b=3;'],
    'keys are unsigned, and text up to a NUL' => ["{dynamic r,keys}$each", $data,
        '18446744073709551615=a;9223372036854775808=b;9223372036854775807=c;=d;05=e;k=f;é=g;'],
    'two after each other, one name' => ["{dynamic r,list}{*}{/dynamic}{dynamic r,map}{*}{/dynamic}", $data, 'xyz123'],

    'a list with holes' => ["{dynamic r,holes}$each", $data, '0=1;2=2;4=3;'],
    'empty' => ["<{dynamic r,empty}$each>", $data, '<>'],
    'a text' => ["<{dynamic r,text}$each>", $data, '<>'],
    'null' => ["<{dynamic r,null}$each>", $data, '<>'],
    'an object' => ["<{dynamic r,object}$each>", $data, '<>'],

    'num' => ["{dynamic r,num}$each", $data, '0=1;1=2;'],
    'num is looked up once' => ['{dynamic r,num of num}{r::[*]};{/dynamic}', $data, 'num;0;'],
    'num, empty' => ["<{dynamic r,num empty}$each>", $data, '<>'],
    'num, a text' => ["<{dynamic r,num text}$each>", $data, '<>'],
    'num, an object' => ["<{dynamic r,num object}$each>", $data, '<>'],

    'nothing is trimmed at the comma' => ['{dynamic r, spaced}{r::*}{/dynamic}{dynamic r,spaced}no{/dynamic}', $data, 's'],
    'a blank in the name' => ['{dynamic r ,list}{addslashes r ::*}{r::*}{/dynamic}', $data, 'xyz'],
    'the first comma counts' => ['{dynamic a,b,list}{*}{/dynamic}', $data, 'no'],
    'an empty name may repeat' => ['{dynamic ,list}{dynamic ,map}{*}{/dynamic}{/dynamic}', $data, '123123123'],
    'the empty key' => ['{dynamic}{*}{/dynamic}{dynamic r,}{r::*}{/dynamic}', ['' => [4, 5]], '4545'],

    'name in use' => ['{dynamic row,list}{dynamic row,map}{/dynamic}{/dynamic}', $data, null,
        "Dynamic block bad parameter 'map': namespace is used already in <FILE>"],
    'name in use comes before the reference' => ['{dynamic row,list}{dynamic row,a::}{/dynamic}{/dynamic}', $data, null,
        "Dynamic block bad parameter 'a::': namespace is used already in <FILE>"],
    'name of a section without data is free' => ['{dynamic row,missing}{dynamic row,list}{*}{/dynamic}{/dynamic}.', $data, '.'],
    'name of an empty section is not' => ['{dynamic row,empty}{dynamic row,list}{*}{/dynamic}{/dynamic}.', $data, null,
        "Dynamic block bad parameter 'list': namespace is used already in <FILE>"],
    'name of a relative section is not' => ['{dynamic row,*::x}{dynamic row,list}{*}{/dynamic}{/dynamic}.', $data, null,
        "Dynamic block bad parameter 'list': namespace is used already in <FILE>"],
    'key as array' => ['{dynamic [*]}{/dynamic}', $data, null, "Dynamic block bad parameter '[*]': [*] is forbidden in <FILE>"],
    'no argument' => ['{dynamic}{/dynamic}', $data, null, "Dynamic block bad parameter '': no parameter found in <FILE>"],
    'name in use, no argument' => ['{dynamic x,list}{rdynamic x,}{/rdynamic}{/dynamic}', $data, null,
        "Dynamic block bad parameter '': namespace is used already in <FILE>"],
    'the empty key is no array' => ['{rdynamic}{/rdynamic}', ['' => 'text'], null, "Dynamic block bad parameter '': no parameter found in <FILE>"],
]);
?>
--EXPECT--
text: as expected
file: as expected

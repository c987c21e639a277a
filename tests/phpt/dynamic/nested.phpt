--TEST--
Nested sections: paths from the element, from an outer one, from constants
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$data = [
    'rows' => [
        'one' => ['name' => 'A', 'children' => ['x' => ['n' => 1], 'y' => ['n' => 2]], 'deep' => ['list' => ['d']]],
        'two' => ['name' => 'B', 'children' => []],
        'three' => ['name' => 'C'],
        'four' => ['name' => 'D', 'children' => 'text'],
        'five' => ['name' => 'E', 'children' => ['z' => ['n' => 3]]],
    ],
    'colours' => ['red', 'blue'],
    'matrix' => [[1, 2], [3, 4]],
    'nums' => [
        ['items' => ['num' => ['a', 'b'], 'x' => 'no']],
        ['items' => ['num' => 'text', 'x' => 'no']],
        ['items' => ['num' => []]],
        ['items' => ['x' => 'yes']],
        ['items' => ['num' => (object) ['p' => 'property', 'q' => 'another', '7' => 'numeric']]],
        ['items' => ['num' => new ArrayObject(['storage is no property'])]],
        ['items' => (object) ['p' => 'not repeated']],
    ],
];

in_folder_with(['again.tpl' => '{dynamic s7,other}{s7::*}{/dynamic}{s7::*}']);
$levels = range(0, 19);
$twenty = ['other' => ['no ']];
foreach ($levels as $level) {
    $twenty["l$level"] = $level === 0 ? ['a ', 'b '] : ["v$level "];
}

check([
    'twenty sections by name, and the outermost of a name that an include uses again' => [
        implode(array_map(fn (int $level) => "{dynamic s$level,l$level}", $levels))
            . '{s0::*}{s7::*}{s19::*}{s20::*}{include again.tpl}{/dynamic}{s19::*}{s18::*};' . str_repeat('{/dynamic}', 19),
        $twenty, 'a v7 v19 v7 v7 v18 ;b v7 v19 v7 v7 v18 ;'],
    'the element itself' => ['{dynamic matrix}{dynamic *}{*}{/dynamic};{/dynamic}', $data, '12;34;'],
    'after the inner section the outer goes on' => ['{dynamic r,matrix}{dynamic *}{*}{/dynamic}{[*]}{r::*::0};{/dynamic}', $data, '1201;3413;'],

    'num of an element' => ['{dynamic n,nums}[{dynamic i,*::items}{[*]}={i::*};{/dynamic}]{/dynamic}', $data,
        '[0=a;1=b;][][][x=yes;][p=property;q=another;7=numeric;][][]'],
    'num of an element is looked up once' => ['{dynamic r,list}{dynamic *}{[*]}{/dynamic};{/dynamic}', ['list' => [['num' => ['num' => [7]]]]], 'num;'],
    'a condition in a property' => ['{dynamic n,nums}{dynamic i,*::items}{optional [*] q}{*}{/optional}{optional * numeric}{[*]}{/optional}{/dynamic}{/dynamic}',
        $data, 'another7'],
]);
--EXPECT--
as expected

--TEST--
Every accepted shape of a reference reaches its value
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$data = [
    'a' => 'A',
    'a:b' => 'one colon',
    ': :' => 'blank between colons',
    ':' => 'a colon',
    '' => 'empty key',
    'x*' => 'star inside',
    'deep' => ['b' => ['c' => 'C'], '*x' => 'star first', '.*' => 'dot star', "it's" => 'quote'],
    'list' => [['k' => 'zero'], ['k' => 'one']],
    '.*' => ['a' => 'never: leftmost it is a star'],
    'rows' => ['first' => ['n' => 'N', 'm' => ['o' => 'O']]],
];

check([
    'one key' => ['{a}', $data, 'A'],
    'a path' => ['{deep::b::c}', $data, 'C'],
    'an index in the path' => ['{list::1::k}', $data, 'one'],
    'a colon is no separator' => ['{a:b}', $data, 'one colon'],
    'a colon alone' => ['{:}', $data, 'a colon'],
    'blanks belong to the key' => ['{htmlspecialchars : :}', $data, 'blank between colons'],
    'the empty key' => ['{addslashes}', $data, 'empty key'],
    'a star inside a key' => ['{x*}', $data, 'star inside'],
    'a star at the start of a key' => ['{deep::*x}', $data, 'star first'],
    'dot star not leftmost' => ['{deep::.*}', $data, 'dot star'],
    'a quote in an escaping tag' => ["{addslashes deep::it's}", $data, 'quote'],

    'innermost element' => ['{dynamic r,rows}{*::n}{/dynamic}', $data, 'N'],
    'innermost element with a dot' => ['{dynamic r,rows}{.*::n}{/dynamic}', $data, 'N'],
    'innermost key' => ['{dynamic r,rows}{[*]}{/dynamic}', $data, 'first'],
    'named element' => ['{dynamic r,rows}{r::*::n}{/dynamic}', $data, 'N'],
    'named element, longer path' => ['{dynamic r,rows}{r::*::m::o}{/dynamic}', $data, 'O'],
    'named key' => ['{dynamic r,rows}{r::[*]}{/dynamic}', $data, 'first'],
    'the element itself' => ['{dynamic r,list::0}{*}{.*}{r::*}{/dynamic}', $data, 'zerozerozero'],
    'a section named dot star cannot be named' => ['{dynamic .*,rows}{.*::*::n}{/dynamic}', $data, null,
        'Bad formated parameter: too many * in <FILE>'],
    'a name is compared byte by byte' => ['{dynamic r,rows}{R::*::n}{addslashes r ::*::n}{ r::*::n}{/dynamic}', $data, '{ r::*::n}'],
    'an unnamed section has no name' => ['{dynamic rows}{rows::*::n}|{*::n}{/dynamic}', $data, '|N'],

    'relative outside of any section' => ['[{*::n}{[*]}{r::*::n}{r::[*]}{addslashes *}{rawurlencode [*]}]', $data, '[]'],
    'relative outside of any section, with default' => ["{*::n 'none'}{[*] 'no key'}", $data, 'noneno key'],
]);
?>
--EXPECT--
text: as expected
file: as expected

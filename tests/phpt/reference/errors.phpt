--TEST--
Every malformed reference is reported in its own form
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$quoted = fn (string $argument, string $what) => "Bad formated parameter'$argument': too many $what in <FILE>";
$plain = fn (string $what) => "Bad formated parameter: $what in <FILE>";

$errors = [
    // an empty part
    'a::' => $quoted('a::', ':'),
    '::a' => $quoted('::a', ':'),
    '::' => $quoted('::', ':'),
    ':::' => $quoted(':::', ':'),
    '::::' => $quoted('::::', ':'),
    'a:::b' => $quoted('a:::b', ':'),
    'a::::b' => $quoted('a::::b', ':'),
    'a::b::' => $quoted('a::b::', ':'),
    '::*' => $quoted('::*', ':'),
    '::[*]' => $quoted('::[*]', ':'),
    '::a::*' => $quoted('::a::*', ':'),
    '*::' => $quoted('*::', ':'),
    '[*]::' => $quoted('[*]::', ':'),
    // a second star, before the leftmost part and as the leftmost part
    'a::*::*' => $quoted('a::*::*', '*'),
    'a::*::x::*' => $quoted('a::*::x::*', '*'),
    'a::[*]::[*]' => $quoted('a::[*]::[*]', '*'),
    'a::*::[*]' => $quoted('a::*::[*]', '*'),
    'a::[*]::*' => $quoted('a::[*]::*', '*'),
    '::*::*' => $quoted('::*::*', '*'),
    '*::*' => $plain('too many *'),
    '.*::*' => $plain('too many *'),
    '[*]::*' => $plain('too many *'),
    '*::[*]' => $plain('too many *'),
    '[*]::[*]' => $plain('too many *'),
    '*::x::*' => $plain('too many *'),
    // a second name left of the star
    'x::y::*' => $plain('too many namespaces'),
    'x::y::[*]' => $plain('too many namespaces'),
    'x::y::*::z' => $plain('too many namespaces'),
    'x::.*::*' => $plain('too many namespaces'),
    'x::y::z::*' => $quoted('x::y::z::*', 'namespaces'),
    '::x::y::*' => $quoted('::x::y::*', 'namespaces'),
    '*::y::z::*' => $quoted('*::y::z::*', 'namespaces'),
    // a key with a path behind it
    'row::[*]::a' => $plain('[*] must be last'),
    '[*]::a' => $plain('[*] must be last'),
    'x::y::[*]::a' => $plain('[*] must be last'),
];

// Where the right-hand parts decide, what stands further left is never looked at.
$errors['too::many::*::stars::*::a::'] = $quoted('too::many::*::stars::*::a::', ':');
$errors['*::*::[*]::a'] = $plain('[*] must be last');

$cases = [];
foreach ($errors as $reference => $message) {
    foreach (['{%s}', '{rawurlencode %s}', '{optional %s}{/optional}', '{!optional %s v}{/optional}',
        '{dynamic %s}{/dynamic}', '{rdynamic name,%s}{/rdynamic}', '{include %s}'] as $tag) {
        $template = sprintf($tag, $reference);
        $cases[$template] = [$template, ['a' => 1], null, $message];
    }
}
check($cases);

// The message quotes the reference, not the tag around it.
check([
    'one of several variables' => ["{missing a:: 'default'}", [], null, "Bad formated parameter'a::': too many : in <FILE>"],
    'a blank is no part of it' => ['{   a::   }', [], '{   a::   }'],
    'a tab before it' => ["{optional\ta::  yes}{/optional}", [], null, "Bad formated parameter'a::': too many : in <FILE>"],
    'behind a variable that is there' => ['{a b::}', ['a' => 'A'], 'A'],
]);
?>
--EXPECT--
text: as expected
file: as expected
text: as expected
file: as expected

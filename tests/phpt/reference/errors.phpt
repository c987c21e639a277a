--TEST--
Every malformed reference is reported in its own form
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

// The message quotes the reference when the fault is met on the way from the right to the left, and
// does not when the leftmost part brings it up. What stands further left is never looked at.
$quoted = [
    ':' => ['a::', '::a', '::', ':::', '::::', 'a:::b', 'a::::b', 'a::b::', '::*', '::[*]', '::a::*', '*::', '[*]::',
        'too::many::*::stars::*::a::'],
    '*' => ['a::*::*', 'a::*::x::*', 'a::[*]::[*]', 'a::*::[*]', 'a::[*]::*', '::*::*'],
    'namespaces' => ['x::y::z::*', '::x::y::*', '*::y::z::*'],
];
$plain = [
    'too many *' => ['*::*', '.*::*', '[*]::*', '*::[*]', '[*]::[*]', '*::x::*'],
    'too many namespaces' => ['x::y::*', 'x::y::[*]', 'x::y::*::z', 'x::.*::*'],
    '[*] must be last' => ['row::[*]::a', '[*]::a', 'x::y::[*]::a', '*::*::[*]::a'],
];
$messages = [];
foreach ($quoted as $what => $references) {
    foreach ($references as $reference) {
        $messages[$reference] = "Bad formated parameter'$reference': too many $what in <FILE>";
    }
}
foreach ($plain as $what => $references) {
    $messages += array_fill_keys($references, "Bad formated parameter: $what in <FILE>");
}

$cases = [];
foreach ($messages as $reference => $message) {
    foreach (['{%s}', '{rawurlencode %s}', '{optional %s}{/optional}', '{!optional %s v}{/optional}',
        '{dynamic %s}{/dynamic}', '{rdynamic name,%s}{/rdynamic}', '{include %s}'] as $tag) {
        $template = sprintf($tag, $reference);
        $cases[$template] = [$template, ['a' => 1], null, $message];
    }
}
check($cases + [
    // The message quotes the reference, not the tag around it.
    'one of several variables' => ["{missing a:: 'default'}", [], null, "Bad formated parameter'a::': too many : in <FILE>"],
    'a blank is no part of it' => ['{   a::   }', [], '{   a::   }'],
    'a tab before it' => ["{optional\ta::  yes}{/optional}", [], null, "Bad formated parameter'a::': too many : in <FILE>"],
    'behind a variable that is there' => ['{a b::}', ['a' => 'A'], 'A'],
]);
?>
--EXPECT--
text: as expected
file: as expected

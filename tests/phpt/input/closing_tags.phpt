--TEST--
Closing tags: the wrong one, a missing one, one too many
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$missing = 'Missing closing tag in <FILE>';
$unexpected = fn (string $kind) => "Unexpected closing $kind tag in <FILE>";
$data = ['a' => 1, 'rows' => [1, 2]];

$opening = ['{optional a}' => 'optional', '{!optional a}' => 'optional', '{optional x}' => 'optional',
    '{optional *}' => 'optional', '{dynamic rows}' => 'dynamic', '{dynamic x}' => 'dynamic',
    '{dynamic *::x}' => 'dynamic', '{rdynamic rows}' => 'rdynamic', '{rdynamic r,x}' => 'rdynamic'];
$cases = [];
foreach (['optional', 'dynamic', 'rdynamic'] as $kind) {
    $cases["stray $kind"] = ["text {/$kind}", $data, null, $unexpected($kind)];
    $cases["one $kind too many"] = ["{optional a}{/optional}{/$kind}", $data, null, $unexpected($kind)];
    foreach ($opening as $tag => $expected) {
        if ($kind !== $expected) {
            $cases["$tag closed by $kind"] = ["{$tag}text{/$kind}", $data, null, $unexpected($kind)];
            $cases["$tag closed by $kind, then right"] = ["{$tag}text{/$kind}{/$expected}", $data, null, $unexpected($kind)];
        }
    }
}
foreach ($opening as $tag => $expected) {
    $cases["$tag left open"] = ["{$tag}text", $data, null, $missing];
    $cases["$tag left open at once"] = [$tag, $data, null, $missing];
    $cases["two $tag, one closed"] = ["{$tag}{$tag}text{/$expected}", $data, null, $missing];
    $cases["$tag around a fault that comes first"] = ["{$tag}{a::}", $data, null, "Bad formated parameter'a::': too many : in <FILE>"];
    $cases["$tag, words behind the closing tag"] = ["{$tag}{/$expected and more}", $data, ''];
    $cases["$tag, letters behind the closing tag"] = ["{$tag}{/{$expected}s}", $data, ''];
}
$cases['sections cross'] = ['{optional a}{dynamic rows}{/optional}{/dynamic}', $data, null, $unexpected('optional')];
$cases['sections nest'] = ['{optional a}{dynamic rows}{rdynamic rows}x{/rdynamic}{/dynamic}{/optional}', $data, 'xxxx'];
$cases['a closing tag in upper case is a variable'] = ['{/OPTIONAL}', $data, '{/OPTIONAL}'];
$cases['a closing tag behind a form feed is a variable'] = ["{optional a}{\f/optional}{/optional}", $data, '{/optional}'];
check($cases);
--EXPECT--
as expected

--TEST--
A hidden body is read all the same: its end, its faults and its includes count, its output never
--EXTENSIONS--
template
--INI--
memory_limit=32M
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$data = ['v' => 'V', 'rows' => [1, 2]];
$hidden = ['{optional x}', '{optional v other}', '{!optional v}', '{!optional v V}'];

$cases = [];
foreach ($hidden as $tag) {
    $cases["text, $tag"] = ["a {$tag}text{/optional} b", $data, 'a  b'];
    $cases["constants, $tag"] = ["a{$tag}{v}{x}{'d'}{rawurlencode v}{/optional}b", $data, 'ab'];
    $cases["sections, $tag"] = ["a{$tag}{dynamic r,rows}{*}{/dynamic}{optional v}{v}{/optional}{/optional}b", $data, 'ab'];
    $cases["tag text, $tag"] = ["a{$tag}{{/optional}}{/optional}b", $data, 'ab'];
    $cases["closing tag, $tag"] = ["a{$tag}{/dynamic}{/optional}b", $data, null, 'Unexpected closing dynamic tag in <FILE>'];
    $cases["reference, $tag"] = ["a{$tag}{a::}{/optional}b", $data, null, "Bad formated parameter'a::': too many : in <FILE>"];
    $cases["quote, $tag"] = ["a{$tag}{a'}{/optional}b", $data, null, "Variable block bad parameter 'a'': ' is forbidden in variable in <FILE>"];
    $cases["include, $tag"] = ["a{$tag}{include *}{/optional}b", $data, null, "Include block bad parameter '*': asterisk in filename is forbidden in <FILE>"];
    $cases["array to text, $tag"] = ["a{$tag}{rows}{/optional}b", $data, 'ab', 'Array to string conversion'];
}
$cases['shown among hidden'] = ['{optional x}{optional v}1{/optional}{/optional}{optional v}{optional x}2{/optional}3{/optional}4', $data, '34'];
$cases['a name inside of a hidden body'] = ['{optional x}{dynamic r,rows}{dynamic r,rows}{/dynamic}{/dynamic}{/optional}', $data, null,
    "Dynamic block bad parameter 'rows': namespace is used already in <FILE>"];
$cases['never repeated'] = ['a{dynamic x}{rows}{* a::}{/dynamic}b', $data, 'ab', 'Array to string conversion'];
check($cases);

// What was hidden is gone, and not held against the memory limit.
var_dump(template(str_repeat('{optional x}' . str_repeat('t{*}', 100) . '{/optional}', 2_000), [], true));
?>
--EXPECT--
text: as expected
file: as expected
string(0) ""

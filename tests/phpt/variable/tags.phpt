--TEST--
Variable tags: alternatives in order, a quoted default, or the tag itself
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$data = ['a' => 'A', 'b' => 'B', 'empty' => '', 'null' => null, 'rows' => [['n' => 'one'], ['m' => 'two']]];
$second = fn (string $content) => "Variable block bad parameter '$content': could not find second ' as the last character in <FILE>";
$forbidden = fn (string $content) => "Variable block bad parameter '$content': ' is forbidden in variable in <FILE>";

check([
    'found, printed as it is' => ['{html}', ['html' => "<b title=\"x\">'&amp;'</b>"], "<b title=\"x\">'&amp;'</b>"],
    'found, but empty' => ["[{empty b 'default'}]", $data, '[]'],
    'found, but null' => ["[{null b 'default'}]", $data, '[]'],
    'missing, blanks around' => ["[{x \t\n\v\f\r}]", $data, '[{x}]'],
    'every blank separates' => ["{x\ty\nz\vx\fy\rb}", $data, 'B'],
    'a byte above 127 is no blank' => ["{x\xA0b\x85a}", $data, "{x\xA0b\x85a}"],
    'no argument' => ['[{}]', $data, '[{}]'],
    'blanks alone' => ["[{\v}{\f\v \t}]", $data, "[{\v}{\f\v \t}]"],

    'nothing but an empty default' => ["[{''}]", $data, '[]'],
    'quote in the default' => ["{'it's'}", $data, "it's"],
    'two quoted texts are one' => ["{x 'x' 'y'}", $data, "x' 'y"],
    'default without blank before it' => ["{x'd'}", $data, null, $forbidden("x'd'")],
    'a newline and bytes in the default' => ["{x 'a\nb\0c\xFF'}", $data, "a\nb\0c\xFF"],
    'a section in the default is text' => ["{x '::*::*'}", $data, '::*::*'],

    'one quote behind a name' => ["{a '}", $data, null, $second("a '")],
    'text behind the default' => ["{a 'x' b}", $data, null, $second("a 'x' b")],
    'quote inside a name' => ["{a'b}", $data, null, $forbidden("a'b")],
    'quotes are read before the names are looked up' => ["{a b'}", $data, null, $forbidden("a b'")],
    'quotes are read before references are' => ["{a:: b'}", $data, null, $forbidden("a:: b'")],

    'in a section: the first that has a value' => ["{dynamic r,rows}[{*::n *::m}]{/dynamic}", $data, '[one][two]'],
    'in a section: default' => ["{dynamic r,rows}[{r::*::n 'none'}]{/dynamic}", $data, '[one][none]'],
    'in a section: a constant as last resort' => ["{dynamic r,rows}[{r::*::n a 'none'}]{/dynamic}", $data, '[one][A]'],
    'in a section: a missing constant first' => ["{dynamic r,rows}[{x r::*::n}]{/dynamic}", $data, '[one][]'],
    'in a section: empty counts as found' => ["{dynamic r,e}[{*::v 'default'}{* 'default'}]{/dynamic}",
        ['e' => [['v' => ''], ['v' => null], ['v' => false]]], '[Array][Array][Array]',
        'Array to string conversion', 'Array to string conversion', 'Array to string conversion'],
    'in a section: the default is not cut at NUL' => ["{dynamic r,rows}{*::x 'a\0b'}{/dynamic}", $data, "a\0ba\0b"],

    // Names behind the one that decides are read only when their turn comes.
    'never reached' => ['{dynamic r,rows}{[*] a::}{/dynamic}', $data, '01'],
    'reached for the second element' => ['{dynamic r,rows}{*::n a::}{/dynamic}', $data, null,
        "Bad formated parameter'a::': too many : in <FILE>"],
    'reached outside of any section' => ['{* a::}', $data, null, "Bad formated parameter'a::': too many : in <FILE>"],
    'reached in a section that never repeats' => ['{dynamic r,none}{* a::}{/dynamic}', ['none' => []], ''],
]);
?>
--EXPECT--
text: as expected
file: as expected

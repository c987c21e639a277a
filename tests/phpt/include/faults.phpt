--TEST--
Faults in included files name the file that has them; circles are found in chains of any length
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

in_folder_with([
    'self.tpl' => 'x{include self.tpl}',
    'a.tpl' => 'a{include b.tpl}',
    'b.tpl' => 'b{include c.tpl}',
    'c.tpl' => 'c{include the::name}',
    'dot.tpl' => '{include ./dot.tpl}',
    'closes.tpl' => 'x{/dynamic}',
    'closes-optional.tpl' => '{/optional}',
    'closes-rdynamic.tpl' => '{rdynamic rows}{/rdynamic}{/rdynamic}',
    'opens.tpl' => '{dynamic rows}x',
    'opens-optional.tpl' => '{optional missing}x',
    'reference.tpl' => 'ok {a::}',
    'quote.tpl' => "{a'}",
    'default.tpl' => "{a 'b}",
    'name.tpl' => '{dynamic n,rows}{dynamic n,rows}{/dynamic}{/dynamic}',
    'key.tpl' => '{dynamic [*]}{/dynamic}',
    'empty.tpl' => '{rdynamic n,}{/rdynamic}',
    'star.tpl' => '{include *}',
    'none.tpl' => '{include}',
    'outer.tpl' => '{include reference.tpl}',
    'late.tpl' => '{dynamic rows}{* b::*::*}{*::x c:::d}{/dynamic}',
    'then.tpl' => '{include head.tpl}{include nosuch.tpl}{a::}',
    'head.tpl' => 'head',
]);
$data = ['rows' => [1, 2], 'the' => ['name' => 'a.tpl'], 'main' => 'main.tpl'];

check([
    'itself' => ['{include self.tpl}', $data, null, "Include block bad parameter 'self.tpl': circle is detected in self.tpl"],
    'a circle of three, quoting the tag' => ['{include a.tpl}', $data, null, "Include block bad parameter 'the::name': circle is detected in c.tpl"],
    'a circle entered elsewhere' => ['{include c.tpl}', $data, null, "Include block bad parameter 'c.tpl': circle is detected in b.tpl"],
    'a circle in a hidden section' => ['{optional x}{include self.tpl}{/optional}', $data, null, "Include block bad parameter 'self.tpl': circle is detected in self.tpl"],
    'names are compared as written' => ['{include dot.tpl}', $data, null, "Include block bad parameter './dot.tpl': circle is detected in ./dot.tpl"],

    'closes the section of the includer' => ['{dynamic rows}{include closes.tpl}', $data, null, 'Unexpected closing dynamic tag in closes.tpl'],
    'closes an optional section' => ['{optional rows}{include closes-optional.tpl}{/optional}', $data, null, 'Unexpected closing optional tag in closes-optional.tpl'],
    'closes its own and one more' => ['{rdynamic rows}{include closes-rdynamic.tpl}', $data, null, 'Unexpected closing rdynamic tag in closes-rdynamic.tpl'],
    'leaves a section open' => ['{include opens.tpl}{/dynamic}', $data, null, 'Missing closing tag in opens.tpl'],
    'leaves a hidden section open' => ['{include opens-optional.tpl}{/optional}', $data, null, 'Missing closing tag in opens-optional.tpl'],
    'reference' => ['{include reference.tpl}', $data, null, "Bad formated parameter'a::': too many : in reference.tpl"],
    'reference, one file further' => ['{include outer.tpl}', $data, null, "Bad formated parameter'a::': too many : in reference.tpl"],
    'quote' => ['{include quote.tpl}', $data, null, "Variable block bad parameter 'a'': ' is forbidden in variable in quote.tpl"],
    'default' => ['{include default.tpl}', $data, null, "Variable block bad parameter 'a 'b': could not find second ' as the last character in default.tpl"],
    'section name' => ['{include name.tpl}', $data, null, "Dynamic block bad parameter 'rows': namespace is used already in name.tpl"],
    'section key' => ['{include key.tpl}', $data, null, "Dynamic block bad parameter '[*]': [*] is forbidden in key.tpl"],
    'section without argument' => ['{include empty.tpl}', $data, null, "Dynamic block bad parameter '': no parameter found in empty.tpl"],
    'star' => ['{include star.tpl}', $data, null, "Include block bad parameter '*': asterisk in filename is forbidden in star.tpl"],
    'no name' => ['{include none.tpl}', $data, null, 'Include block bad parameter: no parameter found in none.tpl'],
    'behind other includes' => ['{include then.tpl}', $data, null, "Bad formated parameter'a::': too many : in then.tpl"],
    'the includer, behind an include' => ['{include head.tpl}{a::}', $data, null, "Bad formated parameter'a::': too many : in <FILE>"],

    // While rendering there is one tree: the top-level file is the current one.
    'found while rendering' => ['{include late.tpl}', $data, null, "Bad formated parameter'c:::d': too many : in <FILE>"],
]);

file_put_contents('main.tpl', '{include head.tpl}{include main}');
echo json_encode(outcome('main.tpl', $data, false)), "\n";
// In string mode the text itself stands first in the chain.
echo json_encode(outcome('{include f}', ['f' => '{include f}'])), "\n";
// Another way of writing the same path is another name, until it repeats.
file_put_contents('twice.tpl', 'x{include ./twice.tpl}');
echo json_encode(outcome('twice.tpl', [], false)), "\n";
echo json_encode(outcome('{include twice.tpl}', [], true)), "\n";
?>
--EXPECT--
text: as expected
file: as expected
[null,"Include block bad parameter 'main': circle is detected in main.tpl"]
[null,"Include block bad parameter 'f': circle is detected in {include f}"]
[null,"Include block bad parameter '.\/twice.tpl': circle is detected in .\/twice.tpl"]
[null,"Include block bad parameter '.\/twice.tpl': circle is detected in .\/twice.tpl"]

--TEST--
Faults in included files name the file that has them; circles are found in chains of any length
--FILE--
<?php
require __DIR__ . '/../helper.inc';

in_folder_with([
    'self.tpl' => 'x{include self.tpl}',
    'a.tpl' => 'a{include b.tpl}',
    'b.tpl' => 'b{include c.tpl}',
    'c.tpl' => 'c{include the::name}',
    'dot.tpl' => '{include ./dot.tpl}',
    'reference.tpl' => 'ok {a::}',
    'outer.tpl' => '{include reference.tpl}',
    'late.tpl' => '{dynamic rows}{* b::*::*}{*::x c:::d}{/dynamic}',
    'head.tpl' => 'head',
]);
$data = ['rows' => [1, 2], 'the' => ['name' => 'a.tpl'], 'main' => 'main.tpl'];
$circle = fn (string $content, string $file) => "Include block bad parameter '$content': circle is detected in $file";

check([
    'a circle of three, quoting the tag' => ['{include a.tpl}', $data, null, $circle('the::name', 'c.tpl')],
    'names are compared as written' => ['{include dot.tpl}', $data, null, $circle('./dot.tpl', './dot.tpl')],

    'one file further' => ['{include outer.tpl}', $data, null, "Bad formated parameter'a::': too many : in reference.tpl"],
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
--EXPECT--
as expected
[null,"Include block bad parameter 'main': circle is detected in main.tpl"]
[null,"Include block bad parameter 'f': circle is detected in {include f}"]
[null,"Include block bad parameter '.\/twice.tpl': circle is detected in .\/twice.tpl"]
[null,"Include block bad parameter '.\/twice.tpl': circle is detected in .\/twice.tpl"]

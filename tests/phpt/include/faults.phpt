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
    'reference.tpl' => 'ok {a::}',
    'outer.tpl' => '{include reference.tpl}',
    'late.tpl' => '{dynamic rows}{* b::*::*}{*::x c:::d}{/dynamic}',
    'head.tpl' => 'head',
]);
$data = ['rows' => [1, 2], 'the' => ['name' => 'a.tpl'], 'main' => 'main.tpl'];
$circle = fn (string $content, string $file) => "Include block bad parameter '$content': circle is detected in $file";

check([
    'itself' => ['{include self.tpl}', $data, null, $circle('self.tpl', 'self.tpl')],
    'a circle of three, quoting the tag' => ['{include a.tpl}', $data, null, $circle('the::name', 'c.tpl')],
    'a circle entered elsewhere' => ['{include c.tpl}', $data, null, $circle('c.tpl', 'b.tpl')],
    'a circle in a hidden section' => ['{optional x}{include self.tpl}{/optional}', $data, null, $circle('self.tpl', 'self.tpl')],
    'names are compared as written' => ['{include dot.tpl}', $data, null, $circle('./dot.tpl', './dot.tpl')],

    'one file further' => ['{include outer.tpl}', $data, null, "Bad formated parameter'a::': too many : in reference.tpl"],
    'the includer, behind an include' => ['{include head.tpl}{a::}', $data, null, "Bad formated parameter'a::': too many : in <FILE>"],
    // While rendering there is one tree: the top-level file is the current one.
    'found while rendering' => ['{include late.tpl}', $data, null, "Bad formated parameter'c:::d': too many : in <FILE>"],
]);

// Faults of each kind, in a file that is included between the tags of a section.
$faults = [
    'x{/dynamic}' => 'Unexpected closing dynamic tag',
    '{/optional}' => 'Unexpected closing optional tag',
    '{rdynamic rows}{/rdynamic}{/rdynamic}' => 'Unexpected closing rdynamic tag',
    '{dynamic rows}x' => 'Missing closing tag',
    '{optional missing}x' => 'Missing closing tag',
    "{a'}" => "Variable block bad parameter 'a'': ' is forbidden in variable",
    "{a 'b}" => "Variable block bad parameter 'a 'b': could not find second ' as the last character",
    '{dynamic n,rows}{dynamic n,rows}{/dynamic}{/dynamic}' => "Dynamic block bad parameter 'rows': namespace is used already",
    '{dynamic [*]}{/dynamic}' => "Dynamic block bad parameter '[*]': [*] is forbidden",
    '{rdynamic n,}{/rdynamic}' => "Dynamic block bad parameter '': no parameter found",
    '{include *}' => "Include block bad parameter '*': asterisk in filename is forbidden",
    '{include}' => 'Include block bad parameter: no parameter found',
    '{include head.tpl}{include nosuch.tpl}{a::}' => "Bad formated parameter'a::': too many :",
];
foreach ($faults as $content => $message) {
    file_put_contents('fault.tpl', $content);
    foreach (['{dynamic rows}{include fault.tpl}{/dynamic}', '{optional rows}{include fault.tpl}{/optional}',
        '{optional missing}{include fault.tpl}{/optional}'] as $template) {
        $seen = outcome($template, $data);
        if ($seen !== [null, "$message in fault.tpl"]) {
            echo "$content in $template: ", printable($seen), "\n";
        }
    }
}

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

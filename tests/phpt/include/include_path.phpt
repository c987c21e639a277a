--TEST--
Files are searched along the include path, at the top level and in include tags
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$folder = in_folder_with([
    'one/page.tpl' => 'page of one, {include part.tpl}',
    'two/page.tpl' => 'page of two',
    'two/part.tpl' => 'part of two',
    'here.tpl' => 'here, {include part.tpl}',
]);
set_include_path("$folder/one" . PATH_SEPARATOR . "$folder/two");
echo json_encode(outcome('page.tpl', [], false)), "\n";
echo json_encode(outcome('{include page.tpl}', [])), "\n";
echo json_encode(outcome('./here.tpl', [], false)), "\n";
echo json_encode(outcome("$folder/two/page.tpl", [], false)), "\n";
set_include_path("$folder/two" . PATH_SEPARATOR . "$folder/one");
echo json_encode(outcome('page.tpl', [], false)), "\n";
echo json_encode(outcome('nosuch.tpl', [], false)), "\n";

// The first folder with such a name decides, though it be a folder; a link that leads nowhere is no such name.
mkdir('two/folder');
file_put_contents('one/folder', 'a file in one');
symlink('nosuch', 'two/link.tpl');
file_put_contents('one/link.tpl', 'linked in one');
echo json_encode([@template('folder', []), @template('{include folder}!', [], true), outcome('link.tpl', [], false)]), "\n";

// Names with dots begin at the working folder, and pieces of the path that are no folders or too long are passed over.
set_include_path('two' . PATH_SEPARATOR . "$folder/here.tpl" . PATH_SEPARATOR . str_repeat('x', 5000) . PATH_SEPARATOR . './one');
echo json_encode([outcome('../' . basename($folder) . '/one/link.tpl', [], false), outcome('link.tpl', [], false), outcome('./link.tpl', [], false)]), "\n";

// What the path does not hold is looked for beside the program.
mkdir('program');
file_put_contents('program/beside.tpl', 'beside the program');
file_put_contents('program/page.php', "<?php echo json_encode([template('beside.tpl', []), template('[{include beside.tpl}]', [], true)]), \"\\n\";");
include 'program/page.php';
--EXPECT--
["page of one, part of two"]
["page of one, part of two"]
["here, part of two"]
["page of two"]
["page of two"]
[null,"Could not open file nosuch.tpl"]
["","!",["linked in one"]]
[["linked in one"],["linked in one"],[null,"Could not open file .\/link.tpl"]]
["beside the program","[beside the program]"]

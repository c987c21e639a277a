--TEST--
Files are searched along the include path, at the top level and in include tags
--EXTENSIONS--
template
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
?>
--EXPECT--
["page of one, part of two"]
["page of one, part of two"]
["here, part of two"]
["page of two"]
["page of two"]
[null,"Could not open file nosuch.tpl"]

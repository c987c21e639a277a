--TEST--
open_basedir holds for templates and for includes
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$folder = in_folder_with(['inside/page.tpl' => 'inside, {include name}.', 'outside.tpl' => 'outside']);
symlink("$folder/outside.tpl", "$folder/inside/link.tpl");

// The setting cannot be taken back, so the script that has it is another one.
$names = var_export(["$folder/inside/page.tpl", "$folder/outside.tpl", "$folder/inside/../outside.tpl", "$folder/inside/link.tpl"], true);
[$output, $status] = run_script("
    ini_set('open_basedir', '$folder/inside');
    foreach ($names as \$name) {
        error_clear_last();
        echo json_encode([@template(\$name, ['name' => '$folder/outside.tpl']), error_get_last()['message'] ?? null], JSON_UNESCAPED_SLASHES), \"\\n\";
    }");
echo str_replace($folder, 'FOLDER', $output), $status, "\n";
--EXPECT--
["inside, .","template(): open_basedir restriction in effect. File(FOLDER/outside.tpl) is not within the allowed path(s): (FOLDER/inside)"]
[null,"Could not open file FOLDER/outside.tpl"]
[null,"Could not open file FOLDER/inside/../outside.tpl"]
[null,"Could not open file FOLDER/inside/link.tpl"]
0

--TEST--
Templates from PHP's own streams, and from what is no file
--INI--
allow_url_fopen=1
--FILE--
<?php
require __DIR__ . '/../helper.inc';

in_folder_with(['page.tpl' => 'page {v}', 'folder/x' => '']);
$data = ['v' => 'V', 'uri' => 'data:,{include page.tpl}!'];

$cases = [
    'data:' => ['data:text/plain,{v}', false],
    'data: in an include' => ['[{include uri}]', true],
    'a filter' => ['php://filter/read=string.toupper/resource=page.tpl', false],
    'empty memory' => ['php://memory', false],
    'the path written with a scheme' => ['file://' . getcwd() . '/page.tpl', false],
];
foreach ($cases as $name => [$template, $isText]) {
    echo $name, ': ', json_encode(outcome($template, $data, $isText)), "\n";
}

// A folder opens, but there is nothing to read in it: PHP says so, and the template is empty.
foreach ([['folder', false], ['[{include folder}]', true], ['[{include .}]', true]] as [$template, $isText]) {
    $seen = outcome($template, $data, $isText);
    echo json_encode([$seen[0], count($seen) > 1 && array_all(array_slice($seen, 1), fn ($message) => str_ends_with($message, 'Is a directory'))]), "\n";
}

// What does not open: PHP's warnings, if any, come first, the call's own is the last.
foreach (['nosuch.tpl', 'page.tpl/x', 'nosuch/page.tpl', 'unknown-scheme://x', 'data:no comma', str_repeat('x', 5000)] as $name) {
    $seen = outcome($name, $data, false);
    echo json_encode([$seen[0], end($seen) === "Could not open file $name", outcome("[{include $name}]", $data)[0]]), "\n";
}
--EXPECT--
data:: ["V"]
data: in an include: ["[page V!]"]
a filter: ["PAGE {V}"]
empty memory: [""]
the path written with a scheme: ["page V"]
["",true]
["[]",true]
["[]",true]
[null,true,"[]"]
[null,true,"[]"]
[null,true,"[]"]
[null,true,"[]"]
[null,true,"[]"]
[null,true,"[]"]

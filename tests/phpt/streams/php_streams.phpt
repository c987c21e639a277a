--TEST--
Templates from PHP's own streams, and from what is no file
--EXTENSIONS--
template
--INI--
allow_url_fopen=1
--FILE--
<?php
require __DIR__ . '/../helper.inc';

in_folder_with(['page.tpl' => 'page {v}', 'folder/x' => '']);
$data = ['v' => 'V', 'uri' => 'data:,{include page.tpl}!', 'base64' => 'data:text/plain;base64,' . base64_encode('{v}{{v}}')];

$cases = [
    'data:' => ['data:text/plain,{v}', false],
    'data:, encoded' => ['data:,%7Bv%7D%20%25', false],
    'data: in an include' => ['[{include uri}]', true],
    'data:, base64' => ['[{include base64}]', true],
    'a filter' => ['php://filter/read=string.toupper/resource=page.tpl', false],
    'a filter in an include' => ['{include php://filter/read=string.rot13/resource=page.tpl}', true],
    'empty memory' => ['php://memory', false],
    'empty temporary file' => ['[{include php://temp}]', true],
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
?>
--EXPECT--
data:: ["V"]
data:, encoded: ["V %"]
data: in an include: ["[page V!]"]
data:, base64: ["[V{v}]"]
a filter: ["PAGE {V}"]
a filter in an include: ["cntr {i}"]
empty memory: [""]
empty temporary file: ["[]"]
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

--TEST--
A file name with a NUL byte names no file, also not the one before the NUL
--FILE--
<?php
require __DIR__ . '/../helper.inc';

in_folder_with(['page.tpl' => 'opened', 'outer.tpl' => "[{include page.tpl\0x}{include page.tpl\0}]"]);
// The message is a text of C: it ends at the NUL.
echo json_encode([
    outcome("page.tpl\0", [], false),
    outcome("page.tpl\0.png", [], false),
    outcome("\0page.tpl", [], false),
    outcome("[{include page.tpl\0x}]", []),
    outcome('outer.tpl', [], false),
    // A name from the data ends at its NUL.
    outcome('[{include name}]', ['name' => "page.tpl\0x"]),
]), "\n";
// A name of nothing is a mistake of the caller for PHP: an exception, and the call's warning.
foreach ([['', []], ['{include name}after', ['name' => ''], true], ['{include name}after', ['name' => "\0page.tpl"], true]] as $arguments) {
    error_clear_last();
    try {
        var_dump(@template(...$arguments));
    } catch (ValueError $error) {
        echo $error->getMessage(), ' ', json_encode(error_get_last()['message'] ?? null), "\n";
    }
}
--EXPECT--
[[null,"Could not open file page.tpl"],[null,"Could not open file page.tpl"],[null,"Could not open file "],["[]"],["[]"],["[opened]"]]
Path must not be empty "Could not open file "
Path must not be empty null
Path must not be empty null

--TEST--
A file reads the same wherever the reader's chunks of 4092 bytes end
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

const CHUNK = 4092;

// What stands across the boundary, and what it gives.
$pieces = [
    'escaped opening brace' => ['{{', '{'],
    'escaped closing brace' => ['}}', '}'],
    'lone closing brace' => ['}x', '}x'],
    'closing braces' => ['}}}}}', '}}}'],
    'literal brace' => ["{ {\t{\n{\r", "{ {\t{\n{\r"],
    'tag' => ['{v}', 'value'],
    'tags side by side' => ['{v}{v}{{{v}}}', 'valuevalue{value}'],
    'tag with a default' => ["{missing 'the default'}", 'the default'],
    'missing tag' => ['{missing}', '{missing}'],
    'section' => ['{dynamic r,rows}{r::[*]}={r::*};{/dynamic}', '0=a;1=b;'],
    'conditions' => ['{optional v value}yes{/optional}{!optional v}no{/optional}', 'yes'],
    'escaping' => ['{rawurlencode url}', 'a%20b'],
    'hidden section' => ['{optional missing}{{{v}}}{/optional}', ''],
    'NUL bytes' => ["\0\0{v}\0", "\0\0value\0"],
];
$data = ['v' => 'value', 'rows' => ['a', 'b'], 'url' => 'a b'];

$path = tempnam(sys_get_temp_dir(), 'tpl');
$wrong = 0;
foreach ($pieces as $name => [$piece, $result]) {
    foreach ([1, 2, 3] as $chunks) {
        // Every place of the boundary in the piece, and one byte around it.
        for ($before = $chunks * CHUNK - strlen($piece) - 1; $before <= $chunks * CHUNK + 1; $before++) {
            $filler = str_repeat("line of text\n", intdiv($before, 13)) . str_repeat('.', $before % 13);
            foreach (['', ' and more', str_repeat('~', CHUNK)] as $after) {
                file_put_contents($path, $filler . $piece . $after);
                if (outcome($path, $data, false) !== [$filler . $result . $after]) {
                    $wrong++;
                    echo "$name: $before bytes before, ", strlen($after), " after\n";
                }
            }
        }
    }
}
echo "$wrong wrong\n";

// Files that are exactly as long as one or two chunks, and one byte shorter and longer.
foreach ([CHUNK - 1, CHUNK, CHUNK + 1, 2 * CHUNK - 1, 2 * CHUNK, 2 * CHUNK + 1] as $length) {
    $ends = ['' => '', '{' => '{', '}' => '}', '{{' => '{', '{v}' => 'value', '{v' => 'value', '{/optional}' => null];
    foreach ($ends as $end => $result) {
        $filler = str_repeat('x', $length - strlen($end));
        file_put_contents($path, $filler . $end);
        $expected = $result === null ? [null, "Unexpected closing optional tag in $path"] : [$filler . $result];
        if (outcome($path, $data, false) !== $expected) {
            echo "length $length ends in '$end': differs\n";
        }
    }
    // An inner brace swallows the rest, across all chunks.
    file_put_contents($path, '{v{' . str_repeat('}', $length - 3));
    if (outcome($path, $data, false) !== ['{v' . str_repeat('{', $length - 2) . '}']) {
        echo "inner brace, length $length: differs\n";
    }
    $long = str_repeat('k', $length);
    file_put_contents($path, '{' . $long . '}');
    if (outcome($path, [$long => 'long key'], false) !== ['long key']) {
        echo "tag of $length bytes: differs\n";
    }
}
unlink($path);
echo "done\n";
?>
--EXPECT--
0 wrong
done

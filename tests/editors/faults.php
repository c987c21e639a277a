<?php
// Every reference of up to five pieces in every kind of tag, and what the
// engine says of it: lines of [template, refused] in JSON for faults.mjs.

$pieces = ['a', '*', '[*]', '.*', '::', ':', ' ', "'"];
$tags = [
    '{%s}', '{x %s}', '{htmlspecialchars %s}', '{include %s}',
    '{optional %s}{/optional}', '{dynamic %s}{/dynamic}', '{dynamic r,%s}{/dynamic}',
];

function references(array $pieces, int $longest): Generator
{
    $level = [''];
    for ($length = 1; $length <= $longest; $length++) {
        $next = [];
        foreach ($level as $start) {
            foreach ($pieces as $piece) {
                $next[] = $start . $piece;
                yield $start . $piece;
            }
        }
        $level = $next;
    }
}

$refused = false;
set_error_handler(function () use (&$refused) {
    return $refused = true;
}, E_WARNING);

$seen = [];
foreach (references($pieces, (int) ($argv[1] ?? 4)) as $reference) {
    foreach ($tags as $tag) {
        $template = sprintf($tag, $reference);
        // A brace before a blank is text, so the tag would not be one.
        if (isset($seen[$template]) || $template[1] === ' ') {
            continue;
        }
        $seen[$template] = true;
        $refused = false;
        template($template, [], true);
        echo json_encode([$template, $refused]), "\n";
    }
}

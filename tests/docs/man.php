<?php
/**
 * The man pages made of the documents: a reader finds no fault with them, and whoever reads them
 * sees every line of code as the document has it.
 *
 *     php tests/docs/man.php FOLDER
 */

declare(strict_types=1);

require __DIR__ . '/examples.php';

$passed = 0;
$faults = [];
foreach (['template.1' => 'docs/template.1.md', 'template.7' => 'docs/language.md'] as $page => $document) {
    $file = escapeshellarg("$argv[1]/$page");
    // That a heading is followed by a paragraph is how the generator writes them.
    exec("mandoc -T lint -W warning $file | grep -v 'skipping paragraph macro: PP after S[HS]'", $faults);
    $text = preg_replace('/.\x08/u', '', shell_exec("mandoc -T utf8 -O width=300 $file"));
    // Tabs are widened, and code is indented.
    $lines = array_map(trim(...), explode("\n", preg_replace('/[ \t]+/', ' ', $text)));
    foreach (lines_of_code(file_get_contents($document)) as $line) {
        in_array($line, $lines, true) ? $passed++ : $faults[] = "$page: not as it is in $document: $line";
    }
}
foreach ($faults as $fault) {
    echo "$fault\n";
}
printf("%d passed, %d failed\n", $passed, count($faults));
exit($faults === [] ? 0 : 1);

/** @return iterable<string> each line in fences and in blocks that are indented, blanks made one */
function lines_of_code(string $markdown): iterable
{
    $code = preg_match_all('/^    (\S.*)$/m', preg_replace('/^:.*\n(    .*\n)*/m', '', $markdown), $match) ? $match[1] : [];
    foreach (blocks_in($markdown) as [, $info, $block]) {
        if ($info !== '#') {
            array_push($code, ...explode("\n", $block));
        }
    }
    foreach ($code as $line) {
        if (trim($line) !== '') {
            yield trim(preg_replace('/[ \t]+/', ' ', $line));
        }
    }
}

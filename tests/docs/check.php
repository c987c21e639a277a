<?php
/**
 * Runs every example in the documents and compares what it shows with what comes out; looks up what
 * they quote, and follows the links from one document to another.
 */

declare(strict_types=1);

require __DIR__ . '/../phpt/helper.inc';
require __DIR__ . '/examples.php';
require __DIR__ . '/run.php';
require __DIR__ . '/links.php';
require __DIR__ . '/messages.php';

$passed = 0;
$programs = 0;
$skipped = 0;
$faults = [];
foreach (glob('{*.md,docs/*.md,{bench,editors,examples}/README.md,{editors,examples}/*/README.md}', GLOB_BRACE) as $file) {
    $text = file_get_contents($file);
    $count = 0;
    foreach (examples_in($text) as $example) {
        $count++;
        // A program needs a PHP of its own: fewer are run where that is slow.
        if ($example->isProgram() && $programs++ % (int) (getenv('TEST_SLOWNESS') ?: 1) > 0) {
            $skipped++;
            continue;
        }
        $fault = fault_of($example);
        $fault === null ? $passed++ : $faults[] = "$file:$example->line: the example does not hold: $fault";
    }
    foreach (links_in($text) as [$line, $target]) {
        $fault = link_fault($file, $target);
        $fault === null ? $passed++ : $faults[] = "$file:$line: $fault";
    }
    foreach (quotations_in($text) as [$line, $source, $block]) {
        is_file($source) && str_contains(file_get_contents($source), $block) ? $passed++ : $faults[] = "$file:$line: $source has no such part";
    }
    echo "$file: $count examples\n";
}
foreach (messages_of_the_extension() as $message) {
    is_shown($message, 'docs/messages.md') ? $passed++ : $faults[] = "docs/messages.md: no example shows \"$message\"";
}
if ($passed < 100) {
    $faults[] = 'hardly any examples were found';
}
foreach ($faults as $fault) {
    echo "$fault\n";
}
printf("%d passed, %d failed, %d skipped\n", $passed, count($faults), $skipped);
exit($faults === [] ? 0 : 1);

<?php
/**
 * Compares the extension with the reference model on random templates and data.
 *
 *     php compare.php [CASES [SEED]]
 *
 * The same seed gives the same cases. A difference is printed with the number that gives this one
 * case again, "php compare.php 1 NUMBER".
 */

declare(strict_types=1);

require __DIR__ . '/../phpt/helper.inc';
require __DIR__ . '/reference_template.php';
require __DIR__ . '/random_cases.php';

$cases = (int) ($argv[1] ?? 5000);
$seed = (int) ($argv[2] ?? 1);
error_reporting(E_ALL);

in_folder_with([]);
$kinds = ['nothing' => 0, 'text' => 0, 'warning' => 0];
$failed = 0;
for ($number = $seed; $number < $seed + $cases; $number++) {
    $source = new RandomCases($number);
    ['template' => $template, 'isText' => $isText, 'files' => $files, 'data' => $data] = $source->next();
    foreach (str_contains($template, '{include') ? $files : [] as $name => $content) {
        file_put_contents($name, $content);
    }
    if (!$isText) {
        file_put_contents('main.tpl', $template);
    }
    $name = $isText ? $template : 'main.tpl';
    $expected = seen(fn () => ReferenceTemplate::outcome($name, $data, $isText));
    if ($expected[0] instanceof TemplateFailure) {
        $expected = [null, ...array_slice($expected, 1), upToNul($expected[0]->getMessage())];
    }
    $actual = outcome($name, $data, $isText);
    $kinds[$expected[0] === null ? 'warning' : ($expected[0] === '' ? 'nothing' : 'text')]++;
    if ($actual !== $expected && ++$failed <= 3) {
        echo "case $number differs\n", printable(['template' => $template] + ($isText ? [] : ['isText' => false])), "\n";
        echo 'files ', printable($files), "\ndata ", printable($data), "\n";
        echo 'expected ', printable($expected), "\nsaw ", printable($actual), "\n\n";
    }
}

// A comparison of empty texts or of failures alone would show little.
foreach ($kinds as $kind => $count) {
    echo "$kind: $count\n";
}
if ($cases >= 1000 && ($kinds['text'] < $cases / 2 || $kinds['warning'] < $cases / 10)) {
    echo "the cases are too much alike\n";
    $failed++;
}
printf("%d passed, %d failed\n", max(0, $cases - $failed), $failed);
exit($failed === 0 ? 0 : 1);

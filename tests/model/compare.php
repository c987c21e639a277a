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

require_once __DIR__ . '/reference_template.php';
require_once __DIR__ . '/random_cases.php';

/** Everything that a caller sees: the result or exception, then the messages in order. */
function seen(callable $call): array
{
    $messages = [];
    set_error_handler(function (int $level, string $message) use (&$messages): bool {
        $messages[] = $message;
        return true;
    });
    try {
        $result = $call();
        if ($result instanceof TemplateFailure) {
            $messages[] = upToNul($result->getMessage());
            $result = null;
        }
    } catch (Throwable $thrown) {
        $result = get_class($thrown) . ': ' . $thrown->getMessage();
    } finally {
        restore_error_handler();
    }
    return [$result, ...$messages];
}

function readable(mixed $value): string
{
    return addcslashes(var_export($value, true), "\0..\11\13..\37\177..\377");
}

$cases = (int) ($argv[1] ?? 5000);
$seed = (int) ($argv[2] ?? 1);
error_reporting(E_ALL);

$folder = tempnam(sys_get_temp_dir(), 'model');
unlink($folder);
mkdir($folder);
chdir($folder);

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
    $actual = seen(fn () => template($name, $data, $isText));
    $kinds[$expected[0] === null ? 'warning' : ($expected[0] === '' ? 'nothing' : 'text')]++;
    if ($actual !== $expected && ++$failed <= 3) {
        echo "case $number differs\n", readable(['template' => $template] + ($isText ? [] : ['isText' => false])), "\n";
        echo 'files ', readable($files), "\ndata ", readable($data), "\n";
        echo 'expected ', readable($expected), "\nsaw ", readable($actual), "\n\n";
    }
}

array_map('unlink', glob('*'));
chdir('..');
rmdir($folder);

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

<?php
/**
 * Renders each page of this folder as a file and as a text, and compares it with its result.txt.
 * A page is a folder: template.tpl and the files that it includes, data.json or data.php, result.txt.
 */

declare(strict_types=1);

require __DIR__ . '/../lib/harness.php';

error_reporting(E_ALL);
set_error_handler(fn (int $level, string $message) => throw new ErrorException($message));

foreach (glob(__DIR__ . '/*', GLOB_ONLYDIR) as $page) {
    chdir($page);
    $data = is_file('data.php') ? require "$page/data.php" : json_decode(file_get_contents('data.json'), true, flags: JSON_THROW_ON_ERROR);
    foreach (['file' => ['template.tpl', $data], 'text' => [file_get_contents('template.tpl'), $data, true]] as $mode => $arguments) {
        try {
            $result = template(...$arguments);
        } catch (Throwable $failure) {
            $result = get_class($failure) . ': ' . $failure->getMessage();
        }
        check(basename($page) . " as $mode", differences(explode("\n", file_get_contents('result.txt')), explode("\n", $result)));
    }
}
echo "$passed passed, $failed failed\n";
exit($failed === 0 && $passed > 0 ? 0 : 1);

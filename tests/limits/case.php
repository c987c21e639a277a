<?php
declare(strict_types=1);

/**
 * One case in a process, or a request, of its own: case.php NAME LIMIT, or NAME and LIMIT in the
 * request. Prints as JSON how it ended, what it used, and what the next call makes.
 */

ini_set('display_errors', '0');
ini_set('log_errors', '0');
set_time_limit(0);
require __DIR__ . '/measure.php';
require __DIR__ . '/bombs.php';

$_SERVER += ['NAME' => $argv[1] ?? '', 'LIMIT' => $argv[2] ?? '64M'];
$end = 'not made';
measured();
register_shutdown_function(function () {
    global $end;
    if (isset($GLOBALS['forked'])) {
        return;
    }
    $seen = measured();
    set_time_limit(0);
    ini_set('memory_limit', '-1');
    set_error_handler(null);
    $fatal = error_get_last();
    PHP_SAPI === 'cli' or http_response_code(200);
    echo "\n", json_encode($seen + [
        'end' => $end ?? 'fatal: ' . preg_replace('/ of .*/', '', $fatal['message'] ?? 'left'),
        'process' => getmypid(),
        'next' => template('{a}{dynamic r,b}{htmlspecialchars r::*}{/dynamic}', ['a' => 'in ', 'b' => ['<order']], true),
    ], JSON_INVALID_UTF8_SUBSTITUTE), "\n";
});
set_error_handler(Again::handle(...));
ini_set('memory_limit', $_SERVER['LIMIT']);

try {
    $bomb = bombs()[$_SERVER['NAME']]['call'] ?? $_SERVER['NAME'];
    $made = $bomb instanceof Closure ? $bomb() : new Call(Shape::named($bomb))->make(...);
    measured();
    set_time_limit(1);
    $end = null;
    $result = $made();
    $end = 'returned' . (is_string($result) ? '' : ' null') . rtrim(': ' . implode(', ', array_keys(Again::$warnings)), ': ');
} catch (Throwable $thrown) {
    $end = get_class($thrown) . ': ' . $thrown->getMessage() . ' at ' . basename($thrown->getFile()) . ':' . $thrown->getLine();
}

<?php
declare(strict_types=1);

/** Rendering what the page sends, within limits: the answer to a request. */

require_once __DIR__ . '/data.php';
require_once __DIR__ . '/manual.php';

const MOST_TEMPLATE = 64 << 10;
const MOST_DATA = 256 << 10;
/** Both, as JSON writes them at the longest: every byte as an escape. */
const MOST_BODY = 6 * (MOST_TEMPLATE + MOST_DATA) + 1024;
/** Beyond the worker's own limit, which counts the time of the processor only. */
const SECONDS_TO_WAIT = 8.0;

/**
 * Answers {"template": text, "data": JSON as text}.
 *
 * @return array{int, array} the HTTP status; what came of it, or {"fault": a sentence} when there was nothing to render
 */
function answer(string $body): array
{
    $request = json_decode($body, true);
    if (!is_string($request['template'] ?? null) || !is_string($request['data'] ?? null)) {
        return [400, ['fault' => 'A request is {"template": text, "data": text}.']];
    }
    ['template' => $template, 'data' => $json] = $request;
    foreach (['template' => [$template, MOST_TEMPLATE], 'data' => [$json, MOST_DATA]] as $what => [$text, $most]) {
        if (strlen($text) > $most) {
            return [413, ['fault' => "The $what can have " . number_format($most) . ' bytes; this has ' . number_format(strlen($text)) . '.']];
        }
    }
    try {
        read_data($json);
    } catch (JsonException $exception) {
        return [422, ['fault' => "The data cannot be read: {$exception->getMessage()}.", 'of' => 'data', 'page' => DATA_PAGE]];
    }
    return [200, render($template, $json)];
}

/** Has a worker render it. */
function render(string $template, string $json): array
{
    $input = tmpfile();
    fwrite($input, json_encode(['template' => $template, 'data' => $json], JSON_THROW_ON_ERROR));
    rewind($input);
    $worker = proc_open(worker_command(), [$input, ['pipe', 'w'], ['file', '/dev/null', 'w']], $pipes);
    $lines = explode("\n", read_until($pipes[1], microtime(true) + SECONDS_TO_WAIT));
    proc_terminate($worker, 9);
    fclose($pipes[1]);
    proc_close($worker);

    $answer = json_decode($lines[0], true)
        ?? ['result' => null, 'complaints' => [['level' => 'Fatal error', 'message' => 'PHP ended without an answer, or took longer than ' . SECONDS_TO_WAIT . ' seconds']]];
    $answer += ['microseconds' => null];
    $findings = array_map(fn (array $finding): array => $finding + ['page' => CHECK_PAGE], json_decode($lines[2] ?? '', true) ?? []);
    return with_places($answer, json_decode($lines[1] ?? '', true), $template) + ['findings' => $findings];
}

/** PHP with the extension: the one that ./dev has built, or the one that php.ini names. */
function worker_command(): array
{
    $module = getenv('TEMPLATE_SO');
    $command = [PHP_BINARY, ...($module ? ['-n', '-d', "extension=$module"] : [])];
    $settings = [
        'memory_limit' => '64M',
        'max_execution_time' => '1',
        'allow_url_fopen' => '0',
        'display_errors' => '0',
        'log_errors' => '0',
        'html_errors' => '0',
        'error_reporting' => '-1',
        'default_charset' => 'UTF-8',
    ];
    foreach ($settings as $name => $value) {
        array_push($command, '-d', "$name=$value");
    }
    return [...$command, __DIR__ . '/worker.php'];
}

/** All that comes before the end, or before the time is over. */
function read_until($pipe, float $deadline): string
{
    $text = '';
    while (!feof($pipe) && ($left = $deadline - microtime(true)) > 0) {
        $ready = [$pipe];
        $none = null;
        if (stream_select($ready, $none, $none, 0, (int) min($left * 1e6, 999_999))) {
            $text .= fread($pipe, 1 << 16);
        }
    }
    return $text;
}

/**
 * Puts its place beside each warning that the scanner knows, and adds what else it found: all that is at fault when there
 * is no result, and as a hint what only other data would bring up. A warning in string mode ends with the text of the
 * template, in which a "%" may have changed on its way; "this template" stands for it here.
 */
function with_places(array $answer, ?array $scan, string $template): array
{
    $faults = $scan['faults'] ?? [];
    foreach ($answer['complaints'] as &$complaint) {
        $begins = fn (array $fault): bool => str_starts_with($complaint['message'], explode('%', "{$fault['message']} in $template")[0]);
        $at = array_find_key($faults, $begins);
        if ($at !== null) {
            $complaint = ['message' => "{$faults[$at]['message']} in this template"] + $complaint + $faults[$at];
            unset($faults[$at]);
        } elseif (str_ends_with($complaint['message'], " in $template")) {
            $complaint['message'] = substr($complaint['message'], 0, -strlen($template)) . 'this template';
        }
        $complaint['page'] = page_about($complaint['message']);
    }
    $hints = array_map(fn (array $hint): array => $hint + ['page' => HINTS_PAGE], $scan['hints'] ?? []);
    foreach ($faults as $fault) {
        $fault['page'] = page_about("{$fault['message']} in this template");
        if ($answer['result'] === null) {
            $answer['complaints'][] = ['level' => 'Fault'] + $fault;
        } else {
            $hints[] = ['message' => "With other data: {$fault['message']}"] + $fault;
        }
    }
    return $answer + ['hints' => $hints];
}

<?php
/** Running one example and comparing what it shows with what came of it. */

declare(strict_types=1);

/** What is wrong with an example: a sentence, or null. */
function fault_of(Example $example): ?string
{
    if (!$example->hasResult()) {
        return 'it shows no output';
    }
    if ($example->text === null && $example->main === null) {
        return 'it has an output, but nothing that is rendered or run';
    }
    if (in_array('…', [$example->output, $example->warning], true)) {
        return 'what it shows is anything';
    }
    [$output, $warning] = in_folder_of($example->files, fn () => $example->isProgram() ? run_program($example->main) : run_template($example));
    foreach (['output' => $output, 'warning' => $warning] as $kind => $seen) {
        if (!agrees($example->$kind, $seen)) {
            return "its $kind is not what it shows\n    shown: " . shown($example->$kind) . "\n    seen:  " . shown($seen);
        }
    }
    return null;
}

/** [result, complaints], each null when there is none. */
function run_template(Example $example): array
{
    $complaints = [];
    set_error_handler(function (int $level, string $message) use (&$complaints): bool {
        $complaints[] = [E_WARNING => '', E_NOTICE => 'Notice: ', E_DEPRECATED => 'Deprecated: '][$level] . $message;
        return true;
    });
    try {
        $result = template($example->text ?? $example->main, $example->data(), $example->text !== null);
    } catch (Throwable $thrown) {
        $result = null;
        $complaints[] = get_class($thrown) . ': ' . $thrown->getMessage();
    } finally {
        restore_error_handler();
    }
    return [$result, $complaints === [] ? null : implode("\n", $complaints)];
}

function run_program(string $file): array
{
    $settings = ['extension' => getenv('TEMPLATE_SO'), 'display_errors' => 'stderr', 'html_errors' => '0', 'log_errors' => '0', 'error_reporting' => '-1'];
    $command = [getenv('PHP')];
    foreach ($settings as $name => $value) {
        array_push($command, '-d', "$name=$value");
    }
    $errors = tmpfile();
    $process = proc_open([...$command, $file], [1 => ['pipe', 'w'], 2 => $errors], $pipes);
    $output = stream_get_contents($pipes[1]);
    proc_close($process);
    rewind($errors);
    $complaints = [];
    foreach (preg_split('/^(?=\w[\w ]*: )/m', stream_get_contents($errors), -1, PREG_SPLIT_NO_EMPTY) as $complaint) {
        $complaints[] = preg_replace('/^Warning: |( in \S*(:\d+$.*| on line \d+))\s*\z/ms', '', $complaint);
    }
    $complaints = trim(implode("\n", array_map(trim(...), $complaints)));
    return [$output, $complaints === '' ? null : $complaints];
}

function agrees(?string $shown, ?string $seen): bool
{
    if ($shown === null || $seen === null) {
        return $shown === null && ($seen ?? '') === '';
    }
    $pattern = str_replace('…', '.*', preg_quote($shown, '/'));
    return preg_match("/^$pattern\$/sD", without_last_line_end($seen)) === 1 || $shown === $seen;
}

function shown(?string $text): string
{
    return $text === null ? 'nothing' : json_encode($text, JSON_UNESCAPED_UNICODE | JSON_UNESCAPED_SLASHES | JSON_INVALID_UTF8_SUBSTITUTE);
}

/** Calls a function where these files are, and nothing else. */
function in_folder_of(array $files, callable $function): mixed
{
    $home = getcwd();
    $folder = sys_get_temp_dir() . '/docs-' . getmypid();
    foreach ($files as $name => $content) {
        @mkdir(dirname("$folder/$name"), 0700, true);
        file_put_contents("$folder/$name", $content);
    }
    @mkdir($folder);
    chdir($folder);
    try {
        return $function();
    } finally {
        chdir($home);
        remove_folder($folder);
    }
}

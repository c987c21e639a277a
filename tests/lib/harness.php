<?php
declare(strict_types=1);

/* The vocabulary of the checks that are scripts of their own. */

$passed = $failed = 0;

/** Reports a check: it holds when there is nothing to complain about. */
function check(string $what, iterable $complaints): void
{
    global $passed, $failed;
    $complaints = [...$complaints];
    $complaints ? $failed++ : $passed++;
    echo $complaints ? 'FAIL ' : 'ok   ', $what, "\n";
    foreach (array_slice($complaints, 0, 10) as $complaint) {
        echo "       $complaint\n";
    }
}

/** Complains about every place where two lists or values differ. */
function differences(mixed $expected, mixed $actual, string $where = ''): iterable
{
    if (is_array($expected) && is_array($actual)) {
        foreach ($expected + $actual as $key => $_) {
            yield from differences($expected[$key] ?? null, $actual[$key] ?? null, "$where/$key");
        }
    } elseif ($expected !== $actual) {
        yield "$where: expected " . shown($expected) . ', got ' . shown($actual);
    }
}

function shown(mixed $value): string
{
    return json_encode($value, JSON_UNESCAPED_SLASHES | JSON_UNESCAPED_UNICODE | JSON_INVALID_UTF8_SUBSTITUTE);
}

/** Runs a command and returns its exit status, output and error output. */
function run(array $command, array $streams = [1 => ['pipe', 'w'], 2 => ['pipe', 'w']]): array
{
    $process = proc_open($command, [['file', '/dev/null', 'r']] + $streams, $pipes);
    $texts = array_map(stream_get_contents(...), $pipes);
    return [proc_close($process), $texts[1] ?? '', $texts[2] ?? ''];
}

/** @return list<string> */
function names_in(string $folder): array
{
    return is_dir($folder) ? array_values(array_diff(scandir($folder), ['.', '..'])) : [];
}

function remove_tree(string $folder): void
{
    foreach (names_in($folder) as $name) {
        $path = "$folder/$name";
        is_dir($path) && !is_link($path) ? remove_tree($path) : unlink($path);
    }
    @rmdir($folder);
}

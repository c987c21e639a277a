<?php
/**
 * What each byte costs the module on arm64, in instructions as the emulator counts them. Byte by byte
 * it is eight at least: less than two shows that vectors are used, and that they pay.
 *
 *     php instructions.php FOLDER-OF-PHP-FOR-ARM64
 */

declare(strict_types=1);

const WORKLOADS = [
    'finding tags' => 'L',
    'htmlspecialchars' => '{dynamic row,rows}{htmlspecialchars row::*::text}{/dynamic}',
    'htmlentities' => '{dynamic row,rows}{htmlentities row::*::text}{/dynamic}',
    'addslashes' => '{dynamic row,rows}{addslashes row::*::text}{/dynamic}',
];
const LIMIT = 2;

/** Runs render.php under the emulator with options of its own; gives what it prints. */
function emulate(array $options, string $template, int $count): string
{
    $php = $_SERVER['argv'][1];
    // With room set aside for it, a program lies at the same addresses each time.
    $command = ['qemu-aarch64', '-R', '0x100000000', '-L', $php, ...$options, "$php/usr/bin/php8.4", '-n',
        '-d', 'extension=' . getenv('TEMPLATE_SO'), __DIR__ . '/render.php', $template, (string) $count];
    $output = shell_exec(implode(' ', array_map(escapeshellarg(...), $command)));
    preg_match('/^0x\w+\.\.0x\w+$/', (string) $output) || throw new Exception("It did not render: $output");
    return $output;
}

/** The instructions that the module executes, those on vectors apart: [all, on vectors]. */
function count_instructions(string $template, int $count): array
{
    $log = getenv('BUILD') . '/instructions.log';
    $range = emulate([], $template, $count);
    $options = ['-d', 'in_asm,exec,nochain', '-dfilter', $range, '-D', $log];
    emulate($options, $template, $count) === $range || throw new Exception('The module has moved.');

    // A run of instructions is listed when it is translated, then only named by its first address.
    $runs = [];
    $start = null;
    $total = [0, 0];
    foreach (new SplFileObject($log) as $line) {
        if (str_starts_with($line, 'IN:')) {
            $start = null;
        } elseif (preg_match('/^0x(\w+):\s+\w+\s+(.*)/', $line, $instruction)) {
            if ($start === null) {
                $start = ltrim($instruction[1], '0');
                $runs[$start] = [0, 0];
            }
            $runs[$start][0]++;
            $runs[$start][1] += preg_match('/\bv\d+\.\d*[bhsd]\b/', $instruction[2]);
        } elseif (preg_match('~^Trace \d+: \S+ \[\w+/0*(\w+)/~', $line, $executed)) {
            $run = $runs[$executed[1]] ?? throw new Exception("Never listed: $line");
            $total[0] += $run[0];
            $total[1] += $run[1];
        }
    }
    unlink($log);
    return $total;
}

$failed = 0;
foreach (WORKLOADS as $name => $template) {
    [$all, $onVectors] = count_instructions($template, 8192);
    [$allOfMore, $onVectorsOfMore] = count_instructions($template, 16384);
    $each = ($allOfMore - $all) / 8192;
    $vectors = ($onVectorsOfMore - $onVectors) / 8192;
    $good = $each < LIMIT && $vectors > 0;
    $failed += $good ? 0 : 1;
    printf("%s %-17s %.2f instructions a byte, %.2f of them on vectors\n", $good ? 'ok    ' : 'FAILED', $name, $each, $vectors);
}
printf("%d passed, %d failed\n", count(WORKLOADS) - $failed, $failed);
exit($failed ? 1 : 0);

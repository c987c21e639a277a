<?php

declare(strict_types=1);

namespace Bench;

/** Processes of other programs. */
final class Processes
{
    /**
     * What goes before a command that is measured: all of them run on the last core that we may use, one at a time,
     * so that none pays for a move.
     *
     * @return list<string>
     */
    public static function onOneCore(): array
    {
        $status = (string) @\file_get_contents('/proc/self/status');
        $several = \preg_match('/^Cpus_allowed_list:.*[-,](\d+)$/m', $status, $last);
        return $several ? ['taskset', '-c', $last[1]] : [];
    }

    /** @param list<string> $command @param array<string, string> $environment */
    public static function run(array $command, string $log, array $environment = []): void
    {
        $streams = [['file', '/dev/null', 'r'], ['file', $log, 'w'], ['redirect', 1]];
        $process = \proc_open($command, $streams, $pipes, null, $environment + \getenv());
        if ($process === false || \proc_close($process) !== 0) {
            throw new \RuntimeException("$command[0] failed: " . \file_get_contents($log));
        }
    }

    public static function say(string $text): void
    {
        \fwrite(\STDERR, "bench: $text\n");
    }
}

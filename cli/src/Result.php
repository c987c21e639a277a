<?php

declare(strict_types=1);

namespace TemplateCli;

/** Writes what a command was asked for to standard output, or fails. */
final class Result
{
    /** Symfony's output does not tell that a disk is full or a pipe is closed. */
    public static function write(string $bytes): void
    {
        $stream = @fopen('php://stdout', 'wb');
        for ($at = 0; $at < strlen($bytes); $at += (int) $written) {
            error_clear_last();
            $written = $stream === false ? false : @fwrite($stream, substr($bytes, $at, 1 << 20));
            $error = error_get_last();
            if ($written === false || $error !== null) {
                throw new Failure('Could not write standard output: ' . preg_replace('~^.*: ~', '', $error['message'] ?? 'it is closed'));
            }
            if ($written === 0) {
                [$none, $streams] = [null, [$stream]];
                @stream_select($none, $streams, $none, 1);
            }
        }
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli;

/** Writes files that are either there as a whole or not at all, whatever interrupts the writing. */
final class AtomicFile
{
    /** Replaces what was there, and keeps its permissions. */
    public static function replace(string $path, string $bytes): void
    {
        if (file_exists($path) && !is_file($path)) {
            // A terminal, a pipe, /dev/null: there is nothing to replace.
            if (@file_put_contents($path, $bytes) !== strlen($bytes)) {
                throw self::failure($path);
            }

            return;
        }
        $path = is_link($path) ? (realpath($path) ?: $path) : $path;
        $temporary = self::temporary($path, $bytes);
        if (is_file($path)) {
            @chmod($temporary, fileperms($path) & 0o7777);
        }
        if (!@rename($temporary, $path)) {
            @unlink($temporary);
            throw self::failure($path);
        }
    }

    /** Writes a file that must not be there yet; false when it is, also when another process was faster. */
    public static function create(string $path, string $bytes): bool
    {
        if (file_exists($path)) {
            return false;
        }
        $temporary = self::temporary($path, $bytes);
        // A hard link fails when its name is taken, which a rename does not.
        if (@link($temporary, $path)) {
            unlink($temporary);

            return true;
        }
        if (file_exists($path) || !@rename($temporary, $path)) {
            @unlink($temporary);

            return file_exists($path) ? false : throw self::failure($path);
        }

        return true;
    }

    /** Removes what a process that was killed while it wrote this file left behind. */
    public static function removeRests(string $path): void
    {
        $name = '/^' . preg_quote('.' . substr(basename($path), 0, 200), '/') . '\.[0-9a-f]{12}\.tmp$/D';
        foreach (preg_grep($name, scandir(dirname($path))) as $rest) {
            @unlink(dirname($path) . "/$rest");
        }
    }

    private static function temporary(string $path, string $bytes): string
    {
        $temporary = sprintf('%s/.%s.%s.tmp', dirname($path), substr(basename($path), 0, 200), bin2hex(random_bytes(6)));
        $file = @fopen($temporary, 'xb');
        if ($file === false) {
            throw self::failure($path);
        }
        $written = @fwrite($file, $bytes);
        if (!fclose($file) || $written !== strlen($bytes)) {
            @unlink($temporary);
            throw self::failure($path);
        }

        return $temporary;
    }

    private static function failure(string $path): Failure
    {
        $reason = error_get_last()['message'] ?? 'unknown error';

        return new Failure("Could not write $path: " . preg_replace('~^.*: ~', '', $reason));
    }
}

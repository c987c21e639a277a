<?php

declare(strict_types=1);

namespace TemplateCli;

final class StandardInput
{
    /** @return resource */
    public static function open(): mixed
    {
        $stream = @fopen('php://stdin', 'rb');
        $stat = $stream === false ? false : fstat($stream);
        // When it was closed, the first file that PHP opens takes its number: the program itself.
        $program = @stat(get_included_files()[0]);
        if ($stat === false || [$stat['dev'], $stat['ino']] === [$program['dev'] ?? null, $program['ino'] ?? null]) {
            throw new UsageError('Standard input is closed.');
        }

        return $stream;
    }

    public static function read(): string
    {
        $text = @stream_get_contents(self::open());

        return $text === false ? throw new UsageError('Could not read standard input.') : $text;
    }
}

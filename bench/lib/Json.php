<?php

declare(strict_types=1);

namespace Bench;

final class Json
{
    /** What a file holds; nothing when there is none. @return array<string, mixed> */
    public static function read(string $file): array
    {
        return \is_file($file) ? \json_decode(\file_get_contents($file), true, 512, \JSON_THROW_ON_ERROR) : [];
    }

    /** @param array<string, mixed> $data */
    public static function write(string $file, array $data): void
    {
        $flags = \JSON_PRETTY_PRINT | \JSON_UNESCAPED_SLASHES | \JSON_UNESCAPED_UNICODE | \JSON_THROW_ON_ERROR;
        \file_put_contents($file, \json_encode($data, $flags) . "\n");
    }
}

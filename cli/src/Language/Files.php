<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** Finds template files the way the engine does: by name from the working directory and the include path. */
final class Files
{
    /** The text of a file, or null when the engine could not open it. */
    public static function read(string $name): ?string
    {
        $path = self::resolve($name);
        if ($path === null) {
            return null;
        }
        // The engine opens a directory and then reads nothing.
        $text = is_dir($path) ? '' : @file_get_contents($path);

        return $text === false ? null : $text;
    }

    /** Names that must not be opened just to look: other wrappers, pipes, devices. */
    public static function isOpaque(string $name): bool
    {
        if (preg_match('~^([a-z0-9+.-]+://|data:)~i', $name) === 1) {
            return true;
        }
        $path = self::resolve($name);

        return $path !== null && !is_file($path) && !is_dir($path);
    }

    public static function resolve(string $name): ?string
    {
        if ($name === '' || str_contains($name, "\0")) {
            return null;
        }
        $path = stream_resolve_include_path($name);

        return $path === false ? null : $path;
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** Tells texts in other encodings than the bytes that the engine takes them for. */
final class Encoding
{
    /** The byte order mark of UTF-8. */
    public const string MARK = "\xEF\xBB\xBF";

    /** By its byte order mark, or because every other byte of its beginning is NUL, as in plain letters. */
    public static function isUtf16(string $text): bool
    {
        return str_starts_with($text, "\xFF\xFE") || str_starts_with($text, "\xFE\xFF")
            || preg_match('/^(?:[^\0]\0){4}|^(?:\0[^\0]){4}/', $text) === 1;
    }
}

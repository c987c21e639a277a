<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** Text that is no tag. */
final class Literal
{
    /**
     * Writes a text so that the engine prints it as it was. A "{" that would begin a tag is doubled (also the last one,
     * behind which something may be added), and each "}" beside another.
     */
    public static function escape(string $text): string
    {
        return preg_replace(['/\{(?![ \t\r\n])/', '/\}(?=\})|(?<=\})\}/'], ['{{', '}}'], $text);
    }
}

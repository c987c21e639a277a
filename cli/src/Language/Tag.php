<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** One tag as the reader cut it from the text. Offsets are bytes; $end is the first byte after the tag. */
final readonly class Tag
{
    public Keyword $keyword;
    public string $argument;

    public function __construct(
        public string $content,
        public int $start,
        public int $end,
        /** The closing brace was there. */
        public bool $terminated,
        /** A "{" inside the tag made it take the rest of the text. */
        public bool $swallowed,
    ) {
        $this->keyword = Keyword::of($content);
        $this->argument = $this->keyword->argument($content);
    }
}

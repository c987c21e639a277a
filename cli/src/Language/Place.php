<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** Where something stands in a template. Lines and columns count from 1; the end is the first column after it. */
final readonly class Place
{
    public function __construct(
        public string $file,
        public int $line = 1,
        public int $column = 1,
        public int $endLine = 1,
        public int $endColumn = 1,
    ) {
    }

    public static function of(Source $source, Tag $tag): self
    {
        return new self($source->name, ...$source->position($tag->start), ...$source->position($tag->end));
    }

    public function __toString(): string
    {
        return "$this->file:$this->line:$this->column";
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** A section whose closing tag has not come yet. */
final class OpenSection
{
    public string $name = '';
    /** The engine keeps the name even when it has no data; otherwise only when the data has the array. */
    public bool $nameIsKept = false;
    /** What the section holds is rendered without data. */
    public bool $live = false;

    public function __construct(public readonly Tag $tag, public readonly Node $node)
    {
    }

    public function isRepeated(): bool
    {
        return $this->tag->keyword->closedBy() !== Keyword::OptionalEnd;
    }

    /** The opening tag as a short quotation. */
    public function quoted(): string
    {
        $content = $this->tag->content;

        return '{' . (strlen($content) > 40 ? substr($content, 0, 37) . '...' : $content) . '}';
    }
}

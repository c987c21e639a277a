<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** A tag in the tree of a template. The text between tags is not in it, nor are closing tags. */
final class Node
{
    /** Where the tags that follow this one, and are not in it, begin in the list of all tags. */
    public int $end = 0;
    /** What an include brings in; null when it could not be read, or leads round in a circle. */
    public ?Scan $included = null;
    /** The name of the file that an include asks for. */
    public string $file = '';
    /** The engine refuses this tag. */
    public bool $refused = true;
    /** What the tag refers to; null for a variable tag, whose references are read when their turn comes. */
    public ?Reference $reference = null;
    /** The reference as it was written. */
    public string $text = '';
    public ?VariableTag $variable = null;
    /** The text that a condition compares with; empty for none. */
    public string $compare = '';
    /** The name of a repeated section. */
    public string $name = '';

    /** @param int $at its own number in that list */
    public function __construct(private readonly Source $source, public readonly Tag $tag, public readonly int $at)
    {
    }

    public function place(): Place
    {
        return Place::of($this->source, $this->tag);
    }

    /** "{optional --}": no data has such a name, so what is in it is only there to be read by people. */
    public function isComment(): bool
    {
        return $this->tag->keyword === Keyword::Optional && preg_match('/^--+$/D', $this->text) === 1;
    }

    /** Tells this tag from all others of the same tree. */
    public function id(): string
    {
        return "{$this->source->name}\0{$this->tag->start}";
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** Finds the tags of a template text, by the engine's brace rules. */
final class Reader
{
    /** A "{" before one of these is literal; a form feed or a vertical tab opens a tag. */
    private const string LITERAL_BEFORE = " \t\r\n";

    private int $position = 0;
    private readonly int $length;

    public function __construct(private readonly string $text)
    {
        $this->length = strlen($text);
    }

    /** The next tag, or null when only literal text is left. */
    public function next(): ?Tag
    {
        while (($at = $this->nextBrace()) < $this->length) {
            $this->position = $at + 1;
            $following = $this->text[$at + 1] ?? '';
            if ($following === $this->text[$at]) {
                ++$this->position;
            } elseif ($this->text[$at] === '{' && $following !== '' && !str_contains(self::LITERAL_BEFORE, $following)) {
                return $this->tag($at);
            }
        }

        return null;
    }

    private function nextBrace(): int
    {
        return $this->position + strcspn($this->text, '{}', $this->position);
    }

    private function tag(int $start): Tag
    {
        $stop = $this->nextBrace();
        $content = substr($this->text, $this->position, $stop - $this->position);
        $swallowed = ($this->text[$stop] ?? '') === '{';
        $terminated = ($this->text[$stop] ?? '') === '}';
        if ($swallowed) {
            // The engine turns every byte that is left into a brace, the inner one included.
            $content .= str_repeat('{', $this->length - $stop);
        }
        $this->position = $terminated ? $stop + 1 : $this->length;

        return new Tag($content, $start, $this->position, $terminated, $swallowed);
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/**
 * Follows the braces that a text prints, apart for each script and style sheet in it: where they do not balance, it is
 * as a rule because "}}" prints one "}" only.
 */
final class Braces
{
    private const string CODE = '~<(script|style)\b[^>]*+>(.*?)(?=</\1\b|\z)~is';

    /** @var list<int> where the parts begin that are counted apart, and where they end */
    private array $borders = [];
    /** @var array<int, list<array{int, bool}>> by part: where a "{" waits for its end, and if it is written as one */
    private array $open = [];
    /** @var array<int, list<int>> by part: each "}}" that follows two single "{" */
    private array $doubtful = [];
    /** @var array<int, int> by part: the first "}" that closes nothing */
    private array $surplus = [];

    public function __construct(private readonly Source $source)
    {
        if (strpbrk($source->text, '{}') !== false && preg_match_all(self::CODE, $source->text, $code, PREG_OFFSET_CAPTURE)) {
            foreach ($code[2] as [$text, $start]) {
                array_push($this->borders, $start, $start + strlen($text));
            }
        }
    }

    /** Takes a piece of literal text, from one tag to the next. */
    public function text(int $start, int $end): void
    {
        $part = 0;
        for ($at = $start; ($at += strcspn($this->source->text, '{}', $at, $end - $at)) < $end; $at += $isDouble ? 2 : 1) {
            $brace = $this->source->text[$at];
            $isDouble = $at + 1 < $end && $this->source->text[$at + 1] === $brace;
            while (($this->borders[$part] ?? PHP_INT_MAX) <= $at) {
                ++$part;
            }
            // What stands between the scripts is one text.
            $this->brace($part % 2 === 0 ? 0 : $part, $at, $brace === '{', $isDouble);
        }
    }

    private function brace(int $part, int $at, bool $opens, bool $isDouble): void
    {
        if ($opens) {
            $this->open[$part][] = [$at, !$isDouble];
        } elseif (($this->open[$part] ?? []) === []) {
            $this->surplus[$part] ??= $at;
        } else {
            [, $isSingle] = array_pop($this->open[$part]);
            $outer = $this->open[$part] === [] ? null : $this->open[$part][array_key_last($this->open[$part])];
            if ($isDouble && $isSingle && ($outer[1] ?? false)) {
                $this->doubtful[$part][] = $at;
            }
        }
    }

    /** @return iterable<array{HintKind, int, string}> kind, place and message of each hint */
    public function hints(): iterable
    {
        foreach ($this->open as $part => $open) {
            $doubtful = array_slice($this->doubtful[$part] ?? [], 0, count($open));
            foreach ($doubtful as $at) {
                yield [HintKind::ClosingBraces, $at, '"}}" prints one "}"; where two are meant, write "}}}}", or a blank or a line end between them'];
            }
            if ($open !== [] && $doubtful === []) {
                yield [HintKind::Braces, $open[0][0], 'no "}" is printed for this "{"; a "}" that is text may have ended a tag, or "}}" stand for two'];
            }
        }
        foreach ($this->surplus as $at) {
            yield [HintKind::Braces, $at, 'no "{" is printed for this "}"'];
        }
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Editor;

use TemplateCli\Language\Files;
use TemplateCli\Language\Keyword;
use TemplateCli\Language\Reader;
use TemplateCli\Language\Reference;
use TemplateCli\Language\ReferenceKind;
use TemplateCli\Language\SyntaxFault;
use TemplateCli\Language\Tag;
use TemplateCli\Language\VariableTag;

/**
 * The tags of a text, as an editor asks about them: their first byte and the one behind them, what they refer to, and
 * where their sections end.
 */
final class Outline
{
    /** A swallowed page is no name. */
    private const int LONGEST_NAME = 1000;

    /** @var list<array<string, mixed>> */
    private array $tags = [];
    /** @var list<array{int, string}> the open sections: the index of the tag, and what it is closed by */
    private array $open = [];
    /** @var array<string, int> how many sections wait for this closing tag */
    private array $waiting = [];

    /** @return list<array<string, mixed>> */
    public static function of(string $text): array
    {
        $outline = new self();
        $reader = new Reader($text);
        while (($tag = $reader->next()) !== null) {
            $outline->add($tag);
        }

        return $outline->tags;
    }

    private function add(Tag $tag): void
    {
        $entry = ['keyword' => $tag->keyword->value, 'start' => $tag->start, 'stop' => $tag->end];
        if (strlen($tag->argument) <= self::LONGEST_NAME) {
            $entry += self::content($tag);
        }
        $this->tags[] = $entry;
        $this->section($tag->keyword);
    }

    /** Opens or ends a section; the tag that opened it gets the index of the one that ended it. */
    private function section(Keyword $keyword): void
    {
        $index = count($this->tags) - 1;
        $closing = $keyword->closedBy()?->value;
        if ($closing !== null) {
            $this->open[] = [$index, $closing];
            $this->waiting[$closing] = ($this->waiting[$closing] ?? 0) + 1;
        } elseif (($this->waiting[$keyword->value] ?? 0) > 0) {
            // Sections within that were forgotten end here, too.
            do {
                [$opened, $closing] = array_pop($this->open);
                $this->tags[$opened]['end'] = $index;
                --$this->waiting[$closing];
            } while ($closing !== $keyword->value);
        }
    }

    /** @return array<string, mixed> */
    private static function content(Tag $tag): array
    {
        $argument = $tag->argument;
        switch ($tag->keyword) {
            case Keyword::Variable:
                try {
                    $texts = VariableTag::parse($argument)->references;
                } catch (SyntaxFault) {
                    $texts = [];
                }
                return ['references' => self::references($texts)];
            case Keyword::Dynamic:
            case Keyword::Rdynamic:
                [$name, $list] = str_contains($argument, ',') ? explode(',', $argument, 2) : ['', $argument];
                return ['name' => $name, 'references' => self::references([$list])];
            case Keyword::Include:
                return ['name' => $argument, 'file' => Files::isOpaque($argument) ? null : Files::resolve($argument)];
            case Keyword::Optional:
            case Keyword::NotOptional:
                return ['references' => self::references([explode(' ', $argument, 2)[0]])];
            default:
                return ['references' => $tag->keyword->value[0] === '/' ? [] : self::references([$argument])];
        }
    }

    /**
     * What can be read of these references; "section" is null for the top level, and empty for the innermost section.
     *
     * @param list<string> $texts
     *
     * @return list<array<string, mixed>>
     */
    private static function references(array $texts): array
    {
        $references = [];
        foreach ($texts as $text) {
            try {
                $reference = Reference::parse($text);
            } catch (SyntaxFault) {
                continue;
            }
            $references[] = [
                'text' => $text,
                'section' => $reference->kind === ReferenceKind::Root ? null : $reference->section,
                'path' => $reference->path,
                'isKey' => $reference->kind === ReferenceKind::SectionKey,
            ];
        }

        return $references;
    }
}

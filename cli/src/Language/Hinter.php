<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** Collects the hints on one file: what the engine accepts and its author hardly meant. */
final class Hinter
{
    private const string HTML_NAME = '~\.x?html?(\.[^./]+)?$~i';
    private const string HTML_TEXT = '~<(?:!doctype\b|/?[a-z][a-z0-9-]*(?:\s[^<>]*)?/?>)~i';

    private readonly bool $isHtml;

    public function __construct(private readonly Scan $scan)
    {
        $source = $scan->source;
        $this->isHtml = preg_match(self::HTML_NAME, $source->name) === 1 || preg_match(self::HTML_TEXT, $source->text) === 1;
        if (str_contains($source->name, '%')) {
            $this->scan->hints[] = new Hint(
                new Place($source->name),
                HintKind::PercentName,
                'the "%" in the name of this file is read as a format in messages',
            );
        }
    }

    public function tag(Tag $tag): void
    {
        if ($tag->swallowed) {
            $this->hint($tag, HintKind::Swallow, 'a "{" inside this tag takes the rest of the file into the tag');
        } elseif (!$tag->terminated) {
            $this->hint($tag, HintKind::Unterminated, 'this tag has no "}"; it ends with the file');
        }
        if ($tag->keyword !== Keyword::Variable && str_contains($tag->content, '%')) {
            $this->hint($tag, HintKind::PercentName, 'the "%" in this tag is read as a format in messages');
        }
        $this->keywordLike($tag);
    }

    private function keywordLike(Tag $tag): void
    {
        $keyword = $tag->keyword->value;
        $following = $tag->content[strlen($keyword)] ?? ' ';
        if ($keyword !== '' && $keyword[0] !== '/' && !str_contains(" \t\r\n\f\v{", $following)) {
            $this->hint($tag, HintKind::KeywordLike, "this is read as the tag \"$keyword\" with the argument \"$tag->argument\"");
        }
    }

    public function variable(Tag $tag, VariableTag $variable): void
    {
        if ($this->isHtml && $variable->references !== []) {
            $message = 'printed raw inside HTML: ' . implode(' ', $variable->references);
            $this->hint($tag, HintKind::RawHtml, $message, references: $variable->references);
        }
    }

    /** A reference of any tag but include, whose argument is more often a file name. */
    public function reference(Tag $tag, string $text): void
    {
        if ($tag->keyword === Keyword::Variable && str_contains($text, '%')) {
            $this->hint($tag, HintKind::PercentName, "the \"%\" in \"$text\" is read as a format in messages");
        }
        if (strpbrk(trim($text), " \t") !== false) {
            $this->hint($tag, HintKind::Blank, "the blank is part of the name \"$text\"; this tag takes one reference");
        }
    }

    public function comparison(Tag $tag, string $compare): void
    {
        if ($compare !== '' && $compare === ltrim($compare) || !str_contains($tag->argument, ' ')) {
            return;
        }
        if (!str_contains($compare, "'")) {
            $this->hint($tag, HintKind::Blank, 'every blank after the first belongs to the text that is compared');
        }
    }

    public function repeated(Tag $tag, string $text): void
    {
        if (str_starts_with($text, ' ') && trim($text) !== '') {
            $this->hint($tag, HintKind::Blank, 'the blank after the comma belongs to the name, which is never found so');
        }
    }

    public function unknownSection(Tag $tag, string $text, string $section): void
    {
        $message = $section === ''
            ? "no repeated section is open here for \"$text\""
            : "no section named \"$section\" is open here for \"$text\"";
        $this->hint($tag, HintKind::UnknownSection, $message, $section);
    }

    public function missingInclude(Tag $tag, string $name): void
    {
        $beside = dirname($this->scan->source->name) . "/$name";
        $cure = is_file($beside)
            ? '; names start from the working directory and the include path (--include-path), not from this file'
            : '; a string in the data under this name would be used instead';
        $this->hint($tag, HintKind::MissingInclude, "there is no file \"$name\"$cure");
    }

    /** @param list<string> $references */
    private function hint(Tag $tag, HintKind $kind, string $message, string $section = '', array $references = []): void
    {
        $this->scan->hints[] = new Hint(Place::of($this->scan->source, $tag), $kind, $message, $section, $references);
    }
}

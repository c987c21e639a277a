<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** Collects the hints on one file: what the engine accepts and its author hardly meant. */
final class Hinter
{
    private const string HTML_NAME = '~\.x?html?(\.[^./]+)?$~i';
    private const string HTML_TEXT = '~<(?:!doctype\b|/?[a-z][a-z0-9-]*(?:\s[^<>]*)?/?>)~i';

    /** A variable tag with code in it: a declaration, a statement, a call, an object in JavaScript or JSON. */
    private const string CODE = '~[;="()&|<>]|^\s*+(?:[\w-]++\s*+:(?!:)\s*+[^\s:]|[.#@][\w-]|return\b)~';
    private const int LONGEST_QUOTE = 80;

    private readonly bool $isHtml;
    private readonly Marks $marks;

    public function __construct(private readonly Scan $scan)
    {
        $source = $scan->source;
        $this->isHtml = preg_match(self::HTML_NAME, $source->name) === 1 || preg_match(self::HTML_TEXT, $source->text) === 1;
        $this->marks = new Marks($source->text);
        if (str_contains($source->name, '%')) {
            $this->at(0, HintKind::PercentName, 'the "%" in the name of this file is read as a format in messages');
        }
        if (Encoding::isUtf16($source->text)) {
            $this->at(0, HintKind::Utf16, 'this file is UTF-16; save it as UTF-8');
        } elseif (($at = strpos($source->text, "\0")) !== false) {
            $this->at($at, HintKind::NulByte, 'a NUL byte; texts of the data and messages end at one');
        }
        if (str_starts_with($source->text, Encoding::MARK)) {
            $this->at(0, HintKind::ByteOrderMark, 'the file begins with a byte order mark, which is printed');
        }
    }

    public function tag(Tag $tag): void
    {
        if ($tag->swallowed) {
            $before = self::line(rtrim($tag->content, '{'));
            $message = "a \"{\" inside the tag \"{{$before}\" takes the rest of the file into it; end the tag, or write \"{{\" where a brace is text";
            $this->hint($tag, HintKind::Swallow, $message);

            return;
        }
        if (!$tag->terminated) {
            $this->hint($tag, HintKind::Unterminated, 'this tag has no "}"; it ends with the file');
        }
        if ($tag->keyword === Keyword::Variable && preg_match(self::CODE, explode("'", $tag->content, 2)[0]) === 1) {
            $message = 'this tag looks like CSS or JavaScript; write "{{" for a brace that is text, or a blank behind it';
            $this->hint($tag, HintKind::CodeLike, $message);
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

    public function comparison(Tag $tag, string $text, string $compare): void
    {
        if (str_ends_with($text, '[*]') && preg_match("/^'.*'$/Ds", $compare) === 1) {
            $this->hint($tag, HintKind::QuotedKey, "the quotes belong to the text that the key is compared with; write it without: " . substr($compare, 1, -1));
        }
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
        if ($tag->swallowed && $kind !== HintKind::Swallow || !$this->marks->wants($kind, $references)) {
            return; // what the rest of the file looks like as a tag helps nobody
        }
        $message = strlen($message) > 3 * self::LONGEST_QUOTE ? self::line($message, 3 * self::LONGEST_QUOTE) : $message;
        $this->scan->hints[] = new Hint(Place::of($this->scan->source, $tag), $kind, $message, $section, $references);
    }

    /** A hint on a byte of the text. */
    public function at(int $offset, HintKind $kind, string $message): void
    {
        if ($this->marks->wants($kind)) {
            [$line, $column] = $this->scan->source->position($offset);
            $this->scan->hints[] = new Hint(new Place($this->scan->source->name, $line, $column, $line, $column + 1), $kind, $message);
        }
    }

    private static function line(string $text, int $length = self::LONGEST_QUOTE): string
    {
        $line = explode("\n", $text, 2)[0];

        return strlen($line) > $length || $line !== $text ? preg_replace('/[\xC0-\xFF][\x80-\xBF]{0,2}$/D', '', substr($line, 0, $length)) . '…' : $line;
    }
}

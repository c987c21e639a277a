<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** What lint points out although the engine accepts it. The values are the names on the command line. */
enum HintKind: string
{
    case RawHtml = 'raw-html';
    case MissingInclude = 'missing-include';
    case PercentName = 'percent-name';
    case Swallow = 'swallow';
    case Unterminated = 'unterminated';
    case KeywordLike = 'keyword-like';
    case UnknownSection = 'unknown-section';
    case Blank = 'blank';
    case Braces = 'braces';
    case ClosingBraces = 'closing-braces';
    case CodeLike = 'code-like';
    case QuotedKey = 'quoted-key';
    case NulByte = 'nul-byte';
    case Utf16 = 'utf-16';
    case ByteOrderMark = 'byte-order-mark';

    /** The page is lost: this is never meant. */
    public function isFault(): bool
    {
        return in_array($this, [self::Swallow, self::Unterminated, self::Utf16], true);
    }

    public function summary(): string
    {
        return match ($this) {
            self::RawHtml => 'a variable is printed raw in an HTML file',
            self::MissingInclude => 'an included file is not there (the engine skips it silently)',
            self::PercentName => 'a "%" in a name is garbled in messages',
            self::Swallow => 'a "{" inside a tag takes the rest of the file into the tag',
            self::Unterminated => 'the last tag of a file has no "}"',
            self::KeywordLike => 'a name begins like a keyword and is read as that keyword',
            self::UnknownSection => 'a reference names a section that is not open around it',
            self::Blank => 'a blank becomes part of a name or of a comparison',
            self::Braces => 'the braces of the text do not balance',
            self::ClosingBraces => 'a "}}" that prints one "}" where two are needed',
            self::CodeLike => 'a tag looks like CSS or JavaScript',
            self::QuotedKey => 'quotes belong to the text that a key is compared with',
            self::NulByte => 'a NUL byte in a template',
            self::Utf16 => 'a template in UTF-16, in which no tag is found',
            self::ByteOrderMark => 'a byte order mark, which is printed',
        };
    }
}

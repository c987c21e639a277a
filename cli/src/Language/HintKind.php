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
        };
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Check;

use TemplateCli\Language\HintKind;

/** What can be wrong between a template and its data. The values are the names on the command line. */
enum Rule: string
{
    case Fault = 'fault';
    case Swallow = 'swallow';
    case Unterminated = 'unterminated';
    case Utf16 = 'utf-16';
    case Missing = 'missing';
    case Silent = 'silent';
    case BlockedDefault = 'blocked-default';
    case ArrayText = 'array-text';
    case ObjectText = 'object-text';
    case InvalidText = 'invalid-text';
    case NulByte = 'nul-byte';
    case Compared = 'compared';
    case NoArray = 'no-array';
    case Path = 'path';
    case Num = 'num';
    case Visible = 'visible';
    case NoSection = 'no-section';
    case MissingInclude = 'missing-include';
    case PrintsNothing = 'prints-nothing';
    case Unused = 'unused';

    public function summary(): string
    {
        return match ($this) {
            self::Fault => 'the engine refuses the template',
            self::Swallow, self::Unterminated, self::Utf16 => HintKind::from($this->value)->summary(),
            self::Missing => 'a name that is not there, and has no default',
            self::Silent => 'a value that an escaping tag at the top level does not print',
            self::BlockedDefault => 'null or false, which keeps a default or an alternative from being used',
            self::ArrayText => 'an array that is printed as "Array"',
            self::ObjectText => 'an object that has no text',
            self::InvalidText => 'a text that is not valid in the charset, and is not printed',
            self::NulByte => 'a text that ends at its NUL byte',
            self::Compared => 'a value that does not compare as one expects',
            self::NoArray => 'a repeated section over what is no array',
            self::Path => 'a path through what is no array',
            self::Num => 'a key "num" that takes the place of the array it is in',
            self::Visible => 'a key "visible" that decides for the array it is in',
            self::NoSection => 'a reference into a repeated section that is not open',
            self::MissingInclude => 'an included file that is not there',
            self::PrintsNothing => 'null or false, which print nothing',
            self::Unused => 'data that no tag asks for',
        };
    }

    /** It is of the template alone, whatever the data. */
    public function isOfTemplate(): bool
    {
        return in_array($this, [self::Fault, self::Swallow, self::Unterminated, self::Utf16], true);
    }

    /** Worth knowing, and hardly ever a mistake: told only on demand. */
    public function isNote(): bool
    {
        return $this === self::PrintsNothing || $this === self::Unused;
    }
}

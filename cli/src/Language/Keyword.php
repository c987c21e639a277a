<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/**
 * What a tag is, told by the keyword that its text begins with.
 *
 * The cases stand in the engine's own order, which decides when one keyword is a prefix of the tag's text:
 * "optionals" is an optional tag with the argument "s", because no separator is asked for.
 */
enum Keyword: string
{
    case Include = 'include';
    case Optional = 'optional';
    case NotOptional = '!optional';
    case OptionalEnd = '/optional';
    case Dynamic = 'dynamic';
    case Rdynamic = 'rdynamic';
    case DynamicEnd = '/dynamic';
    case RdynamicEnd = '/rdynamic';
    case Addslashes = 'addslashes';
    case Htmlentities = 'htmlentities';
    case Htmlspecialchars = 'htmlspecialchars';
    case Rawurlencode = 'rawurlencode';
    /** A tag that begins with no keyword: references and a default. */
    case Variable = '';

    private const string BLANKS = " \t\r\n\f\v";

    public static function of(string $content): self
    {
        foreach (self::cases() as $keyword) {
            if (str_starts_with($content, $keyword->value)) {
                return $keyword;
            }
        }
    }

    /** The tag's text after the keyword, trimmed as the engine does it: blanks alone stay as they are. */
    public function argument(string $content): string
    {
        $rest = substr($content, strlen($this->value));
        $trimmed = trim($rest, self::BLANKS);

        return $trimmed === '' ? $rest : $trimmed;
    }

    public function closes(): bool
    {
        return $this->value !== '' && $this->value[0] === '/';
    }

    public function opensSection(): bool
    {
        return $this->closedBy() !== null;
    }

    /** The tag that ends this section; null for a tag that opens none. */
    public function closedBy(): ?self
    {
        return match ($this) {
            self::Optional, self::NotOptional => self::OptionalEnd,
            self::Dynamic => self::DynamicEnd,
            self::Rdynamic => self::RdynamicEnd,
            default => null,
        };
    }
}

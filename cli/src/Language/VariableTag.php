<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** The text of a variable tag: references in order of precedence, and a quoted default. */
final readonly class VariableTag
{
    private const string BLANKS = " \t\n\v\f\r";

    /** @param list<string> $references */
    private function __construct(public string $content, public array $references, public ?string $default)
    {
    }

    /** @throws SyntaxFault */
    public static function parse(string $content): self
    {
        $references = [];
        $length = strlen($content);
        $at = strspn($content, self::BLANKS);
        while ($at < $length) {
            if ($content[$at] === "'") {
                return new self($content, $references, self::defaultAt($content, $at));
            }
            $end = $at + strcspn($content, self::BLANKS . "'", $at);
            if (($content[$end] ?? '') === "'") {
                throw self::fault($content, "' is forbidden in variable");
            }
            $references[] = substr($content, $at, $end - $at);
            $at = $end + strspn($content, self::BLANKS, $end);
        }

        return new self($content, $references, null);
    }

    private static function defaultAt(string $content, int $quote): string
    {
        $last = strlen($content) - 1;
        if ($quote === $last || $content[$last] !== "'") {
            throw self::fault($content, "could not find second ' as the last character");
        }

        return substr($content, $quote + 1, $last - $quote - 1);
    }

    private static function fault(string $content, string $what): SyntaxFault
    {
        return new SyntaxFault("Variable block bad parameter '$content': $what");
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/**
 * A variable reference such as "user::name", "row::*::title" or "row::[*]".
 *
 * The engine reads references from right to left, and which of two messages it gives depends on where on this
 * way it stumbles; so this parser takes the same way.
 */
final readonly class Reference
{
    /** @param list<string> $path */
    private function __construct(
        public ReferenceKind $kind,
        public array $path,
        /** The section's name; empty for the innermost one. */
        public string $section,
    ) {
    }

    /** @throws SyntaxFault */
    public static function parse(string $argument): self
    {
        $path = [];
        $section = null;
        $star = false;
        $isKey = false;
        $parts = self::partsFromTheRight($argument);
        foreach ($parts as $part) {
            if ($part === '*' || $part === '[*]') {
                if ($star) {
                    throw self::quoted($argument, 'too many *');
                }
                $isKey = $part === '[*]';
                if ($isKey && $path !== []) {
                    throw self::plain('[*] must be last');
                }
                $star = true;
            } elseif ($section !== null) {
                throw self::quoted($argument, 'too many namespaces');
            } elseif ($star) {
                $section = $part;
            } else {
                $path[] = $part;
            }
        }
        $prefix = $parts->getReturn();

        return self::withPrefix($prefix, array_reverse($path), $section, $star, $isKey);
    }

    /**
     * Yields the parts right of the leftmost one, and returns that.
     *
     * @return \Generator<int, string, void, string>
     */
    private static function partsFromTheRight(string $argument): \Generator
    {
        $length = strlen($argument);
        $end = $length - 1;
        while ($length > 1) {
            $separator = strrpos($argument, '::', min($length - 2, $end) - $length);
            if ($separator === false) {
                break;
            }
            if ($end - $separator < 2) {
                throw self::quoted($argument, 'too many :');
            }
            yield substr($argument, $separator + 2, $end - $separator - 1);
            if ($separator === 0) {
                throw self::quoted($argument, 'too many :');
            }
            $end = $separator - 1;
        }

        return substr($argument, 0, $end + 1);
    }

    /** @param list<string> $path */
    private static function withPrefix(string $prefix, array $path, ?string $section, bool $star, bool $isKey): self
    {
        if ($prefix === '*' || $prefix === '.*' || $prefix === '[*]') {
            if ($star) {
                throw self::plain('too many *');
            }
            if ($prefix === '[*]' && $path !== []) {
                throw self::plain('[*] must be last');
            }

            return new self($prefix === '[*]' ? ReferenceKind::SectionKey : ReferenceKind::SectionValue, $path, '');
        }
        if ($section !== null) {
            throw self::plain('too many namespaces');
        }
        if (!$star) {
            return new self(ReferenceKind::Root, [$prefix, ...$path], '');
        }

        return new self($isKey ? ReferenceKind::SectionKey : ReferenceKind::SectionValue, $path, $prefix);
    }

    private static function quoted(string $argument, string $what): SyntaxFault
    {
        // No blank before the quote: the engine's message has none either.
        return new SyntaxFault("Bad formated parameter'$argument': $what");
    }

    private static function plain(string $what): SyntaxFault
    {
        return new SyntaxFault("Bad formated parameter: $what");
    }
}

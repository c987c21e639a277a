<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/**
 * What a template says about itself, in the language's own way of commenting:
 *
 *     {optional --}lint allow-raw body_html *_html{/optional}
 *     {optional --}lint off blank{/optional}
 */
final readonly class Marks
{
    private const string MARK = '~\{optional\s+--+\}\s*+lint\s++(allow-raw|off)\s++([^{}]*+)\{/optional~';

    /** @var list<string> patterns of references that may be printed raw */
    private array $raw;
    /** @var list<string> names of hints */
    private array $off;

    public function __construct(string $text)
    {
        preg_match_all(self::MARK, $text, $marks, PREG_SET_ORDER);
        $words = static fn (string $kind): array => preg_split('/[\s,]+/', implode(' ', array_map(
            static fn (array $mark): string => $mark[1] === $kind ? $mark[2] : '',
            $marks,
        )), flags: PREG_SPLIT_NO_EMPTY);
        $this->raw = $words('allow-raw');
        $this->off = $words('off');
    }

    /** @param list<string> $references what a raw variable refers to */
    public function wants(HintKind $kind, array $references = []): bool
    {
        return !in_array($kind->value, $this->off, true)
            && !($kind === HintKind::RawHtml && self::allows($this->raw, $references));
    }

    /**
     * @param list<string> $patterns
     * @param list<string> $references
     */
    public static function allows(array $patterns, array $references): bool
    {
        return array_all($references, static fn (string $name): bool => array_any(
            $patterns,
            static fn (string $pattern): bool => fnmatch($pattern, $name),
        ));
    }
}

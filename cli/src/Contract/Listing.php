<?php

declare(strict_types=1);

namespace TemplateCli\Contract;

use TemplateCli\Language\Place;

/** The contract as a list of paths with their uses. */
final readonly class Listing
{
    /** @var list<array{int, string, Shape}> depth, path, and what is asked of it */
    private array $lines;

    public function __construct(private Contract $contract)
    {
        $this->lines = iterator_to_array(self::lines($contract->root, [], 0), false);
    }

    /**
     * @param list<string> $path
     *
     * @return \Generator<array{int, string, Shape}>
     */
    private static function lines(Shape $shape, array $path, int $depth): \Generator
    {
        $inner = $shape->element === null ? $shape->keys : $shape->keys + ['*' => $shape->element];
        foreach ($inner as $key => $asked) {
            $isPlain = $asked->usages === [] && $key === '*';
            if (!$isPlain) {
                yield [$depth, implode('::', [...$path, $key]), $asked];
            }
            yield from self::lines($asked, [...$path, $key], $depth + ($isPlain ? 0 : 1));
        }
    }

    public function text(): string
    {
        $width = max([0, ...array_map(static fn (array $line): int => 2 * $line[0] + mb_strlen($line[1]), $this->lines)]);
        $text = '';
        foreach ($this->lines as [$depth, $path, $shape]) {
            $label = mb_str_pad(str_repeat('  ', $depth) . $path, min($width, 40));
            $usages = array_map(static fn (Usage $usage): string => "{$usage->describe()} ($usage->place)", $shape->usages);
            $text .= rtrim("$label  " . implode('; ', $usages)) . "\n";
        }
        foreach ($this->contract->unknown as $what => $place) {
            $text .= "Not known: $what ($place)\n";
        }

        return addcslashes(mb_scrub($text, 'UTF-8'), "\0..\11\13..\37\177");
    }

    /** @return array<string, mixed> */
    public function data(): array
    {
        $unknown = [];
        foreach ($this->contract->unknown as $what => $place) {
            $unknown[] = ['what' => $what] + self::place($place);
        }
        $paths = array_map(static fn (array $line): array => [
            'path' => $line[1],
            'required' => $line[2]->isRequired(),
            'uses' => array_values(array_map(self::usage(...), $line[2]->usages)),
        ], $this->lines);

        return ['data' => $paths, 'unknown' => $unknown];
    }

    /** @return array<string, mixed> */
    private static function usage(Usage $usage): array
    {
        return ['as' => $usage->kind->value] + self::place($usage->place) + [
            'detail' => $usage->detail,
            'default' => $usage->hasDefault,
            'alternatives' => $usage->alternatives,
            'conditional' => $usage->isConditional,
        ];
    }

    /** @return array<string, mixed> */
    private static function place(Place $place): array
    {
        return ['file' => $place->file, 'line' => $place->line, 'column' => $place->column];
    }
}

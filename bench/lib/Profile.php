<?php

declare(strict_types=1);

namespace Bench;

/** Where the instructions of template() go, from the profiles that counting them has left. */
final class Profile implements Section
{
    /** What a line of the profile belongs to: the first pattern that its library, source and function match. */
    private const PARTS = [
        'reader' => '#/src/input/#',
        'analysis' => '#/src/template/#',
        'rendering' => '#/src/render/#',
        'boundary' => '#/src/module/#',
        'allocating' => '#malloc|\bfree\b|calloc|operator new|operator delete|_e(malloc|free|realloc)|realloc#',
        'copying, searching' => '#mem(cpy|move|set|cmp|chr)|str(len|chr|cmp)#',
        'C++ library' => '#c\+\+#',
        'PHP' => '#/bin/php|/php/#',
    ];

    public function __construct(private readonly Instructions $instructions)
    {
    }

    public function title(): string
    {
        return 'Where the instructions go';
    }

    public function measure(): array
    {
        $figures = [];
        foreach ($this->instructions->count() as $workload => $counts) {
            $parts = self::parts(\file($this->instructions->profile($workload, 'ours'), \FILE_IGNORE_NEW_LINES));
            $total = \array_sum($parts);
            $figures[$workload] = [
                'instructions' => $counts,
                'parts' => \array_map(static fn (int $cost): float => $cost / $total, $parts),
            ];
        }
        return $figures;
    }

    /**
     * Adds up what each part does itself. The lines of a profile are: where we are (ob, fl, fn), a cost there, or a
     * call (calls, with the cost of what is called in the next line, which is counted over there).
     *
     * @param list<string> $lines
     * @return array<string, int>
     */
    private static function parts(array $lines): array
    {
        $parts = \array_fill_keys([...\array_keys(self::PARTS), 'the rest'], 0);
        $names = [];
        $here = ['ob' => '', 'fl' => '', 'fn' => ''];
        $part = 'the rest';
        $isCallee = false;
        foreach ($lines as $line) {
            if (\preg_match('/^c?(ob|fl|fi|fe|fn)=\((\d+)\)(?: (.*))?$/', $line, $match)) {
                [, $kind, $number] = $match;
                $space = \strtr($kind, ['fi' => 'fl', 'fe' => 'fl']);
                $names[$space][$number] = $match[3] ?? $names[$space][$number];
                if (isset($here[$kind]) && $line[0] !== 'c') {
                    $here[$kind] = $names[$space][$number];
                    $part = self::part(\implode(' ', $here));
                }
            } elseif (\str_starts_with($line, 'calls=')) {
                $isCallee = true;
            } elseif (\preg_match('/^[+*\d-]\S* (\d+)$/', $line, $match)) {
                $parts[$part] += $isCallee ? 0 : (int) $match[1];
                $isCallee = false;
            }
        }
        return $parts;
    }

    private static function part(string $where): string
    {
        static $known = [];
        return $known[$where] ??= \array_key_first(\array_filter(
            self::PARTS,
            static fn (string $pattern): bool => \preg_match($pattern, $where) === 1,
        )) ?? 'the rest';
    }

    public function report(array $figures): string
    {
        $percent = static fn (float $part): string => \sprintf('%.0f %%', 100 * $part);
        $head = ['workload', 'instructions', 'to hand-written', ...\array_keys(\current($figures)['parts'])];
        $rows = [];
        foreach ($figures as $workload => ['instructions' => $counts, 'parts' => $parts]) {
            $rows[] = [
                $workload,
                \number_format($counts['ours']),
                Markdown::number($counts['ours'] / $counts['hand']),
                ...\array_map($percent, \array_values($parts)),
            ];
        }
        return Markdown::table($head, $rows);
    }
}

<?php

declare(strict_types=1);

namespace Bench;

/** The report: tables and figures as Markdown. */
final class Markdown
{
    /**
     * Columns after the first are set flush right.
     *
     * @param list<string> $head
     * @param list<list<string>> $rows
     */
    public static function table(array $head, array $rows): string
    {
        $line = static fn (array $cells): string => '| ' . \implode(' | ', $cells) . " |\n";
        $rule = ['---', ...\array_fill(0, \count($head) - 1, '---:')];
        return $line($head) . $line($rule) . \implode('', \array_map($line, $rows));
    }

    /** Three digits that say something: 1240, 23.7, 0.93, 0.0052. */
    public static function number(float $value): string
    {
        if ($value == 0.0) {
            return '0';
        }
        $digits = \max(0, 2 - (int) \floor(\log10(\abs($value))));
        return \number_format($value, $digits, '.', '');
    }

    public static function microseconds(float $nanoseconds): string
    {
        return self::number($nanoseconds / 1000);
    }

    public static function bytes(int $bytes): string
    {
        return match (true) {
            $bytes < 1000 => "$bytes B",
            $bytes < 10_000 => self::number($bytes / 1000) . ' KB',
            $bytes < 1_000_000 => \round($bytes / 1000) . ' KB',
            default => self::number($bytes / 1_000_000) . ' MB',
        };
    }
}

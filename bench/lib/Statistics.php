<?php

declare(strict_types=1);

namespace Bench;

final class Statistics
{
    /** @param non-empty-list<float|int> $values */
    public static function median(array $values): float
    {
        return self::quantile($values, 0.5);
    }

    /** @param non-empty-list<float|int> $values @return array{float, float} the lower and the upper one */
    public static function quartiles(array $values): array
    {
        return [self::quantile($values, 0.25), self::quantile($values, 0.75)];
    }

    /** Between two values the line that joins them counts. @param non-empty-list<float|int> $values */
    private static function quantile(array $values, float $part): float
    {
        \sort($values);
        $place = $part * (\count($values) - 1);
        $below = (int) \floor($place);
        $above = \min($below + 1, \count($values) - 1);
        return $values[$below] + ($place - $below) * ($values[$above] - $values[$below]);
    }
}

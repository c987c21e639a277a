<?php

declare(strict_types=1);

namespace Bench;

final class Statistics
{
    /** @param non-empty-list<float|int> $values */
    public static function median(array $values): float
    {
        \sort($values);
        $middle = \intdiv(\count($values) - 1, 2);
        return ($values[$middle] + $values[\count($values) - 1 - $middle]) / 2;
    }
}

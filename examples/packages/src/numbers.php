<?php
declare(strict_types=1);

/* Numbers as pages show them. */

/** 4.2 MiB, from a number of KiB. */
function size_text(int $kib): string
{
    return match (true) {
        $kib < 1024 => "$kib KiB",
        $kib < 1024 * 1024 => number_format($kib / 1024, 1) . ' MiB',
        default => number_format($kib / 1024 / 1024, 2) . ' GiB',
    };
}

function number(int $number): string
{
    return number_format($number);
}

/** How wide a bar is, in whole percent. What is there at all shows. */
function percent(int $part, int $whole): int
{
    return $part > 0 ? max(1, (int) round(100 * $part / $whole)) : 0;
}

/** 12.3 %, and "less than 0.1 %" in place of nothing. */
function share(int $part, int $whole): string
{
    $percent = $whole > 0 ? 100 * $part / $whole : 0;
    return $part > 0 && $percent < 0.1 ? 'less than 0.1 %' : number_format($percent, 1) . ' %';
}

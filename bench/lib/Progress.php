<?php

declare(strict_types=1);

namespace Bench;

final class Progress
{
    public static function say(string $text): void
    {
        \fwrite(\STDERR, "bench: $text\n");
    }
}

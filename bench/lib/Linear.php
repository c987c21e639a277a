<?php

declare(strict_types=1);

namespace Bench;

/** Whether the time for a byte stays the same, however large the template: all that could be made to grow faster. */
final class Linear
{
    private const BYTES = [10_000, 100_000, 1_000_000, 10_000_000];
    private const BLOCK_MILLISECONDS = 20.0;
    private const ROUNDS = 3;

    /**
     * How much more a byte may cost in a template ten times as long. With the square of the size it would be ten
     * times as much; what is allowed is the logarithm's part and what is paid for memory that is out of the caches.
     */
    private const TOLERATED = 4.0;

    /** Nanoseconds that a byte costs in memory that is new to the process: below that, times say nothing of growth. */
    private const NEW_MEMORY = 2.0;

    public function __construct(private readonly Settings $settings)
    {
    }

    private function time(string $shape, int $bytes): float
    {
        $worker = new Worker($this->settings, 'shape');
        $worker->prepare($shape, $bytes);
        $count = $worker->calibrate(self::BLOCK_MILLISECONDS);
        $times = [];
        for ($round = 0; $round < self::ROUNDS; $round++) {
            $times[] = $worker->time($count) / $count;
        }
        return Statistics::median($times);
    }

    public function report(): string
    {
        $table = [];
        $marked = 0;
        foreach (\array_keys(engines\Shape::ALL) as $shape) {
            Processes::say($shape);
            $row = [$shape];
            $before = \INF;
            foreach (self::BYTES as $bytes) {
                $time = $this->time($shape, $bytes) / $bytes;
                $isMarked = $time > self::TOLERATED * \max($before, self::NEW_MEMORY);
                $marked += (int) $isMarked;
                $row[] = $isMarked ? '**' . Markdown::number($time) . '**' : Markdown::number($time);
                $before = $time;
            }
            $table[] = $row;
        }
        $sizes = \array_map(Markdown::bytes(...), self::BYTES);
        return Markdown::table(['ns a byte, in templates of', ...$sizes], $table)
            . "\nMarked, as more than the next size may cost: " . ($marked === 0 ? 'none' : "$marked, in bold") . ".\n";
    }
}

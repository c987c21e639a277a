<?php

declare(strict_types=1);

namespace Bench;

/** How fast a template is read, and whether time stays linear in its size: nothing but text, nothing but tags. */
final class Analysis implements Section
{
    private const BYTES = [1000, 10_000, 100_000, 1_000_000, 10_000_000, 100_000_000];

    /** Bytes of text, or number of tags. */
    private const SIZES = [
        'plain' => self::BYTES,
        'copy of plain' => self::BYTES,
        'tags' => [10, 100, 1000, 10_000, 100_000, 1_000_000],
    ];
    private const BLOCK_MILLISECONDS = 50.0;

    public function __construct(private readonly Settings $settings, private readonly int $rounds)
    {
    }

    public function title(): string
    {
        return 'Analysis';
    }

    public function measure(): array
    {
        $figures = [];
        foreach (self::SIZES as $text => $sizes) {
            foreach ($sizes as $size) {
                Progress::say("$text, $size");
                $figures[$text][$size] = ['nanoseconds' => $this->time($text, $size)];
            }
        }
        return $figures;
    }

    private function time(string $text, int $size): float
    {
        $worker = new Worker($this->settings, 'text');
        $worker->prepare($text, $size);
        $count = $worker->calibrate(self::BLOCK_MILLISECONDS);
        $times = [];
        for ($round = 0; $round < $this->rounds; $round++) {
            $times[] = $worker->time($count) / $count;
        }
        return Statistics::median($times);
    }

    public function report(array $figures): string
    {
        $plain = [];
        foreach ($figures['plain'] as $bytes => ['nanoseconds' => $time]) {
            $copy = $figures['copy of plain'][$bytes]['nanoseconds'];
            $plain[] = [
                Markdown::bytes($bytes),
                Markdown::microseconds($time),
                Markdown::number($bytes / $time),
                Markdown::number($bytes / $copy),
            ];
        }
        $tags = [];
        foreach ($figures['tags'] as $count => ['nanoseconds' => $time]) {
            $tags[] = [\number_format($count), Markdown::microseconds($time), Markdown::number($count * 1000 / $time)];
        }
        $head = ['plain text, as a string', 'µs', 'GB a second', 'one copy, GB a second'];
        return Markdown::table($head, $plain)
            . "\n"
            . Markdown::table(['variable tags, settled at once', 'µs', 'million a second'], $tags);
    }
}

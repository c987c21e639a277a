<?php

declare(strict_types=1);

namespace Bench;

/** How time for a row, and memory for a byte of output, change as the table gets longer. */
final class Growth implements Section
{
    private const ROWS = [10, 100, 1000, 10_000, 100_000];
    private const ENGINES = ['hand', 'ours'];
    private const BLOCK_MILLISECONDS = 20.0;

    public function __construct(private readonly Settings $settings, private readonly int $rounds)
    {
    }

    public function title(): string
    {
        return 'Growth';
    }

    public function measure(): array
    {
        $figures = [];
        foreach (self::ROWS as $rows) {
            Progress::say("table of $rows rows");
            $figures[$rows] = $this->time($rows);
            foreach (self::ENGINES as $engine) {
                $figures[$rows][$engine]['memory'] = (new Worker($this->settings, $engine))->memory('table', $rows);
            }
        }
        return $figures;
    }

    /** @return array<string, array{nanoseconds: float}> for a row, by engine */
    private function time(int $rows): array
    {
        $workers = [];
        foreach (self::ENGINES as $engine) {
            $workers[$engine] = new Worker($this->settings, $engine);
        }
        Outputs::prepare($workers, 'table', $rows);
        $counts = \array_map(static fn (Worker $worker): int => $worker->calibrate(self::BLOCK_MILLISECONDS), $workers);
        $times = [];
        for ($round = 0; $round < $this->rounds; $round++) {
            foreach ($workers as $engine => $worker) {
                $times[$engine][] = $worker->time($counts[$engine]) / $counts[$engine] / $rows;
            }
        }
        return \array_map(static fn (array $list): array => ['nanoseconds' => Statistics::median($list)], $times);
    }

    public function report(array $figures): string
    {
        $table = [];
        foreach ($figures as $rows => $engines) {
            ['hand' => $hand, 'ours' => $ours] = $engines;
            $table[] = [
                \number_format($rows),
                Markdown::bytes($ours['memory']['output']),
                Markdown::number($hand['nanoseconds']),
                Markdown::number($ours['nanoseconds']),
                Markdown::number($ours['nanoseconds'] / $hand['nanoseconds']),
                self::bytesForAByte($hand['memory']),
                self::bytesForAByte($ours['memory']),
            ];
        }
        $head = [
            'rows',
            'output',
            'hand-written, ns a row',
            'template(), ns a row',
            'ratio',
            'hand-written, peak bytes a byte',
            'template(), peak bytes a byte',
        ];
        return Markdown::table($head, $table);
    }

    /**
     * Nothing for a short output, which is less than what the kernel's account is off by.
     *
     * @param array<string, int> $memory
     */
    private static function bytesForAByte(array $memory): string
    {
        return $memory['output'] < 1_000_000 ? '' : Markdown::number($memory['process'] / $memory['output']);
    }
}

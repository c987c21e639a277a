<?php

declare(strict_types=1);

namespace Bench;

/**
 * All engines on the same workloads. A run has a process for each engine and workload; in each round every engine
 * in turn renders for some milliseconds, so that whatever else the machine does hits them alike. What stays the same
 * through the life of a process (where its memory came to lie, also by what it has rendered before) moves single
 * runs by up to a fifth, and more: hence several runs, each with processes of its own, and the ratio to hand-written
 * PHP as the median of the runs' ratios.
 */
final class SideBySide implements Section
{
    private const BLOCK_MILLISECONDS = 20.0;

    /** @param list<string> $workloads */
    public function __construct(
        private readonly Settings $settings,
        private readonly array $workloads,
        private readonly int $runs,
        private readonly int $rounds,
    ) {
    }

    public function title(): string
    {
        return 'Side by side';
    }

    /** Only compares the outputs. @return array<string, int> the length of each workload's */
    public function check(): array
    {
        $workers = $this->workers();
        $lengths = [];
        foreach ($this->workloads as $workload) {
            $lengths[$workload] = Outputs::prepare($workers, $workload);
        }
        return $lengths;
    }

    /** @return array<string, array{bytes: int, engines: array<string, array<string, mixed>>}> by workload */
    public function measure(): array
    {
        $lengths = $this->check();
        $times = [];
        for ($run = 1; $run <= $this->runs; $run++) {
            Progress::say("run $run of $this->runs");
            foreach ($this->workloads as $workload) {
                $workers = $this->workers();
                Outputs::prepare($workers, $workload);
                foreach ($this->rounds($workers) as $engine => $list) {
                    $times[$workload][$engine][] = $list;
                }
            }
        }
        $result = [];
        foreach ($this->workloads as $workload) {
            Progress::say("memory of $workload");
            $summary = $this->summary($workload, $times[$workload]);
            $result[$workload] = ['bytes' => $lengths[$workload], 'engines' => $summary];
        }
        return $result;
    }

    /** @return array<string, Worker> */
    private function workers(): array
    {
        $workers = [];
        foreach (Engines::available() as $engine) {
            $workers[$engine] = new Worker($this->settings, $engine);
        }
        return $workers;
    }

    /**
     * @param array<string, Worker> $workers
     * @return array<string, non-empty-list<float>> nanoseconds for a rendering, by engine
     */
    private function rounds(array $workers): array
    {
        $counts = \array_map(static fn (Worker $worker): int => $worker->calibrate(self::BLOCK_MILLISECONDS), $workers);
        $times = [];
        $order = \array_keys($workers);
        for ($round = 0; $round < $this->rounds; $round++) {
            foreach ($order as $engine) {
                $times[$engine][] = $workers[$engine]->time($counts[$engine]) / $counts[$engine];
            }
            $order[] = \array_shift($order);
        }
        return $times;
    }

    /**
     * @param array<string, list<non-empty-list<float>>> $times by engine and run
     * @return array<string, array<string, mixed>> by engine
     */
    private function summary(string $workload, array $times): array
    {
        $medians = \array_map(static fn (array $runs): array => \array_map(Statistics::median(...), $runs), $times);
        $summary = [];
        foreach ($times as $engine => $runs) {
            $divide = static fn (float $own, float $hand): float => $own / $hand;
            $ratios = \array_map($divide, $medians[$engine], $medians['hand']);
            $all = \array_merge(...$runs);
            $summary[$engine] = [
                'nanoseconds' => Statistics::median($all),
                'quartiles' => Statistics::quartiles($all),
                'ratio' => Statistics::median($ratios),
                'ratios' => $ratios,
                'memory' => (new Worker($this->settings, $engine))->memory($workload),
            ];
        }
        return $summary;
    }

    /** @param array<string, array{bytes: int, engines: array<string, array<string, mixed>>}> $result */
    public function report(array $result): string
    {
        return self::ratios($result) . "\n" . self::details($result);
    }

    /** The table that says it all: ratios to hand-written PHP. */
    private static function ratios(array $result): string
    {
        $others = \array_values(\array_diff(\array_keys(\current($result)['engines']), ['hand']));
        $head = ['workload', 'output', 'hand-written, µs', ...\array_map(Engines::title(...), $others)];
        $rows = [];
        foreach ($result as $workload => ['bytes' => $bytes, 'engines' => $engines]) {
            $ratio = static fn (string $engine): string => Markdown::number($engines[$engine]['ratio']);
            $rows[] = [
                "$workload: " . Workload::ALL[$workload],
                Markdown::bytes($bytes),
                Markdown::microseconds($engines['hand']['nanoseconds']),
                ...\array_map($ratio, $others),
            ];
        }
        return Markdown::table($head, $rows);
    }

    private static function details(array $result): string
    {
        $rows = [];
        foreach ($result as $workload => ['engines' => $engines]) {
            foreach ($engines as $engine => $figures) {
                $rows[] = [
                    $workload,
                    Engines::title($engine),
                    Markdown::microseconds($figures['nanoseconds']),
                    Markdown::range($figures['quartiles'], Markdown::microseconds(...)),
                    Markdown::range([\min($figures['ratios']), \max($figures['ratios'])], Markdown::number(...)),
                    Markdown::number($figures['nanoseconds'] / $engines['copy']['nanoseconds']),
                    Markdown::bytes($figures['memory']['php']),
                    Markdown::bytes($figures['memory']['process']),
                ];
            }
        }
        $head = [
            'workload',
            'engine',
            'median, µs',
            'quartiles, µs',
            'ratio, by run',
            'copies of the output',
            'peak, PHP’s',
            'peak, process',
        ];
        return Markdown::table($head, $rows);
    }
}

<?php

declare(strict_types=1);

namespace Bench;

/** The micro-benchmarks: runs the program that ./dev bench has built and tells its medians. */
final class Micro implements Section
{
    private const REPETITIONS = 9;

    private readonly string $program;

    public function __construct()
    {
        $this->program = \getenv('BUILD') . '/micro/micro';
    }

    public function title(): string
    {
        return 'The parts one by one';
    }

    public function measure(): array
    {
        $command = [
            ...Worker::onOneCore(),
            $this->program,
            '--benchmark_format=json',
            '--benchmark_min_time=0.02s',
            '--benchmark_repetitions=' . self::REPETITIONS,
            '--benchmark_enable_random_interleaving=true',
            '--benchmark_report_aggregates_only=true',
        ];
        $process = \proc_open($command, [['file', '/dev/null', 'r'], ['pipe', 'w'], \STDERR], $pipes);
        $output = \stream_get_contents($pipes[1]);
        if (\proc_close($process) !== 0) {
            throw new \RuntimeException("The micro-benchmarks failed: $this->program");
        }
        $benchmarks = \json_decode($output, true, 512, \JSON_THROW_ON_ERROR)['benchmarks'];
        \usort($benchmarks, static fn (array $a, array $b): int => self::place($a) <=> self::place($b));
        $figures = [];
        foreach ($benchmarks as $benchmark) {
            if ($benchmark['aggregate_name'] === 'median') {
                $figures[$benchmark['run_name']] = \array_filter([
                    'nanoseconds' => $benchmark['cpu_time'],
                    'bytes_per_second' => $benchmark['bytes_per_second'] ?? null,
                    'items_per_second' => $benchmark['items_per_second'] ?? null,
                ]);
            }
        }
        return $figures;
    }

    /** Where it stands in the sources: they are run in any order. @return array{int, int} */
    private static function place(array $benchmark): array
    {
        return [$benchmark['family_index'], $benchmark['per_family_instance_index']];
    }

    public function report(array $figures): string
    {
        $rows = [];
        foreach ($figures as $name => $figure) {
            $isForEach = isset($figure['items_per_second']);
            $rows[] = [
                $name,
                Markdown::number($isForEach ? 1e9 / $figure['items_per_second'] : $figure['nanoseconds']),
                isset($figure['bytes_per_second']) ? Markdown::number($figure['bytes_per_second'] / 1e9) : '',
            ];
        }
        return Markdown::table(['benchmark', 'ns', 'GB a second'], $rows);
    }
}

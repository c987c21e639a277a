<?php

declare(strict_types=1);

namespace Bench;

/**
 * All engines on the same workloads. A run has a process for each engine and workload, and data of its own; in each
 * round every engine in turn renders for some milliseconds, so that whatever else the machine does hits them alike.
 * What stays the same through the life of a process (where its memory came to lie) moves single runs by up to a fifth,
 * and so does the data: hence several runs, each with another seed, and the ratio to hand-written PHP as the median of
 * the runs' ratios, with the least and the greatest beside it.
 */
final class SideBySide
{
    /** What the report calls them. */
    public const ENGINES = [
        'hand' => 'hand-written',
        'jit' => 'hand-written, JIT',
        'ours' => 'template()',
        'twig' => 'Twig',
        'smarty' => 'Smarty',
        'floor' => 'the floor',
    ];

    private const BLOCK_MILLISECONDS = 20.0;
    private const LEAST_ROUNDS = 3;
    private const MOST_ROUNDS = 15;

    /** For all workloads and seeds together, as far as the least number of rounds allows. */
    private const SECONDS = 110;

    /** Of shorter outputs memory says nothing: the kernel's account is off by more. */
    private const TELLING_BYTES = 500_000;

    /** @param non-empty-list<string> $workloads @param non-empty-list<int> $seeds */
    public function __construct(
        private readonly Settings $settings,
        private readonly array $workloads,
        private readonly array $seeds,
    ) {
    }

    /** Only compares the outputs: a line for each workload, and the count that the test runner reads. */
    public function check(): int
    {
        $failures = 0;
        foreach ($this->workloads as $workload) {
            try {
                $length = self::prepare($this->workers(), $workload, $this->seeds[0]);
                echo "same output of all engines ($length bytes): $workload\n";
            } catch (\RuntimeException $failure) {
                echo $failure->getMessage(), "\n";
                $failures++;
            }
        }
        \printf("%d passed, %d failed\n", \count($this->workloads) - $failures, $failures);
        return $failures === 0 ? 0 : 1;
    }

    /** The table of ratios. */
    public function report(): string
    {
        $figures = [];
        foreach ($this->seeds as $seed) {
            foreach ($this->workloads as $workload) {
                Processes::say("$workload, seed $seed");
                foreach ($this->measure($workload, $seed) as $name => $figure) {
                    $figures[$workload][$name][] = $figure;
                }
            }
        }
        $rows = \array_map(self::row(...), \array_keys($figures), $figures);
        $others = \array_diff_key(self::ENGINES, ['hand' => true]);
        $head = ['workload', 'output', 'hand-written, µs', ...\array_values($others), 'template(), by seed'];
        return Markdown::table([...$head, 'template() to the floor', 'its memory, bytes a byte'], $rows);
    }

    /** @return array<string, float> nanoseconds by engine, the length of the output, memory for a byte of it */
    private function measure(string $workload, int $seed): array
    {
        $end = \microtime(true) + self::SECONDS / \count($this->seeds) / \count($this->workloads);
        $workers = $this->workers();
        $length = self::prepare($workers, $workload, $seed);
        $counts = \array_map(static fn (Worker $worker): int => $worker->calibrate(self::BLOCK_MILLISECONDS), $workers);
        $times = [];
        for ($round = 0; $round < self::MOST_ROUNDS; $round++) {
            if ($round >= self::LEAST_ROUNDS && \microtime(true) > $end) {
                break;
            }
            foreach ($workers as $engine => $worker) {
                $times[$engine][] = $worker->time($counts[$engine]) / $counts[$engine];
            }
        }
        $ours = new Worker($this->settings, 'ours');
        $memory = $length < self::TELLING_BYTES ? \NAN : $ours->memory($workload, $seed);
        return \array_map(Statistics::median(...), $times) + ['length' => $length, 'memory' => $memory];
    }

    /** @return array<string, Worker> */
    private function workers(): array
    {
        $workers = [];
        foreach (\array_keys(self::ENGINES) as $engine) {
            $workers[$engine] = new Worker($this->settings, $engine);
        }
        return $workers;
    }

    /**
     * Sets a workload up in every worker and holds the outputs against each other: what is not equal byte for byte is
     * not worth timing.
     *
     * @param array<string, Worker> $workers by engine; the hand-written one tells what is right
     * @return int the length of the output
     */
    private static function prepare(array $workers, string $workload, int $seed): int
    {
        $expected = null;
        foreach ($workers as $engine => $worker) {
            $output = \file_get_contents($worker->prepare($workload, $seed));
            $expected ??= $output;
            if ($output !== $expected) {
                throw new \RuntimeException("$workload: $engine" . self::difference($output, $expected));
            }
            if ($uncached = $worker->uncached()) {
                throw new \RuntimeException("$engine runs without opcache: " . \implode(', ', $uncached));
            }
        }
        return \strlen($expected);
    }

    private static function difference(string $output, string $expected): string
    {
        $at = \strspn($output ^ $expected, "\0");
        [$output, $expected] = \array_map(
            static fn (string $text): string => \addcslashes(\substr($text, \max(0, $at - 20), 60), "\0..\37"),
            [$output, $expected],
        );
        return " differs from the hand-written template at byte $at: \"$output\", not \"$expected\"";
    }

    /** @param array<string, non-empty-list<float>> $figures by engine and seed @return list<string> */
    private static function row(string $workload, array $figures): array
    {
        $divide = static fn (float $one, float $other): float => $one / $other;
        $ratios = [];
        foreach (\array_keys(self::ENGINES) as $engine) {
            $ratios[$engine] = \array_map($divide, $figures[$engine], $figures['hand']);
        }
        $toFloor = \array_map($divide, $figures['ours'], $figures['floor']);
        $median = static fn (array $values): string => Markdown::number(Statistics::median($values));
        $memory = Statistics::median($figures['memory']);
        return [
            "$workload: " . Workload::ALL[$workload][3],
            Markdown::bytes((int) Statistics::median($figures['length'])),
            Markdown::microseconds(Statistics::median($figures['hand'])),
            ...\array_map($median, \array_values(\array_diff_key($ratios, ['hand' => true]))),
            Markdown::number(\min($ratios['ours'])) . ' to ' . Markdown::number(\max($ratios['ours'])),
            $median($toFloor),
            \is_nan($memory) ? '' : Markdown::number($memory),
        ];
    }
}

<?php

declare(strict_types=1);

namespace Bench;

/**
 * Instructions for a rendering, counted by callgrind: the same each time, however busy the machine is. What is kept
 * and compared is their ratio to those of the hand-written template in the same run, which a new compiler or a new
 * PHP moves much less than either count. Work of the kernel is not in it (opening and reading files).
 */
final class Instructions
{
    /** The C library chooses how to copy by the processor; the counts are to be the same on any. */
    private const ONE_FOR_ALL = [
        'GLIBC_TUNABLES' => 'glibc.cpu.hwcaps=-AVX512F,-AVX512VL,-AVX2,-AVX_Fast_Unaligned_Load,-ERMS,-FSRM'
            . ':glibc.cpu.x86_non_temporal_threshold=0x40000000',
    ];

    /** In a profile: the name of the measurement (see count.php), and what it comes to. */
    private const TOTAL = '/^desc: Trigger: Client Request: ([\w-]+)\/(\w+)\/(\d+)$.*^summary: (\d+)/ms';

    /** A ratio may grow by this much without being called slower. */
    private const TOLERANCE = 0.05;

    private const BASELINE = __DIR__ . '/../baseline.json';

    /** @param list<string> $workloads */
    public function __construct(
        private readonly Settings $settings,
        private readonly array $workloads,
        private readonly int $seed,
    ) {
    }

    /** @return int the exit status */
    public function run(bool $record): int
    {
        $counts = $this->count();
        $now = \array_map(static fn (array $count): float => \round($count['ours'] / $count['hand'], 4), $counts);
        $recorded = \is_file(self::BASELINE) ? \json_decode(\file_get_contents(self::BASELINE), true)['ratios'] : [];
        if ($record) {
            $recorded = \array_intersect_key(\array_replace(Workload::ALL, $recorded, $now), $recorded + $now);
            $baseline = ['made with' => Machine::versions($this->settings), 'ratios' => $recorded];
            $text = \json_encode($baseline, \JSON_PRETTY_PRINT | \JSON_UNESCAPED_SLASHES | \JSON_THROW_ON_ERROR);
            \file_put_contents(self::BASELINE, "$text\n");
        }
        return self::report($counts, $now, $recorded);
    }

    /** @return array<string, array{hand: float, ours: float}> instructions for a rendering, by workload */
    private function count(): array
    {
        $folder = $this->settings->scratch . '/callgrind';
        \mkdir($folder);
        Processes::run([
            'valgrind',
            '--tool=callgrind',
            '--instr-atstart=no',
            "--callgrind-out-file=$folder/out",
            $this->settings->php,
            ...$this->settings->options(),
            \dirname(__DIR__) . '/count.php',
            $this->settings->scratch,
            (string) $this->seed,
            ...$this->workloads,
        ], "$folder/log", self::ONE_FOR_ALL);
        $counts = \array_fill_keys($this->workloads, []);
        foreach (\glob("$folder/out.*") as $file) {
            if (\preg_match(self::TOTAL, \file_get_contents($file), $found)) {
                [, $workload, $engine, $renderings, $instructions] = $found;
                $counts[$workload][$engine] = $instructions / $renderings;
                \rename($file, "$folder/$workload.$engine");
            }
        }
        return $counts;
    }

    /**
     * A table, and the count that the test runner reads.
     *
     * @param array<string, array{hand: float, ours: float}> $counts
     * @param array<string, float> $now
     * @param array<string, float> $recorded
     */
    private static function report(array $counts, array $now, array $recorded): int
    {
        $rows = [];
        $failures = 0;
        foreach ($counts as $workload => ['hand' => $hand, 'ours' => $ours]) {
            $change = isset($recorded[$workload]) ? $now[$workload] / $recorded[$workload] - 1 : \INF;
            $failures += $change > self::TOLERANCE ? 1 : 0;
            $rows[] = [
                $workload,
                \number_format($hand),
                \number_format($ours),
                \sprintf('%.4f', $now[$workload]),
                isset($recorded[$workload]) ? \sprintf('%.4f', $recorded[$workload]) : '',
                match (true) {
                    $change === \INF => 'not recorded',
                    $change > self::TOLERANCE => \sprintf('%+.1f %%: slower', 100 * $change),
                    $change < -self::TOLERANCE => \sprintf('%+.1f %%: faster, record it', 100 * $change),
                    default => \sprintf('%+.1f %%', 100 * $change),
                },
            ];
        }
        echo Markdown::table(['workload', 'hand-written', 'template()', 'ratio', 'recorded', 'change'], $rows), "\n";
        if ($failures > 0) {
            echo "More than 5 % above bench/baseline.json, or not in it.\n";
            echo "If that is as it must be: ./dev bench --instructions --record\n";
        }
        \printf("%d passed, %d failed\n", \count($counts) - $failures, $failures);
        return $failures === 0 ? 0 : 1;
    }
}

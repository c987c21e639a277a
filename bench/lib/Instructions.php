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
    /** So many that a run takes seconds, and that what comes once does not show. */
    public const RENDERINGS = [
        'table' => 4,
        'nested' => 4,
        'escape' => 2,
        'page' => 100,
        'mail' => 1000,
        'static' => 50,
        'include' => 100,
    ];

    /** The C library chooses how to copy by the processor; the counts are to be the same on any. */
    private const ONE_FOR_ALL = [
        'GLIBC_TUNABLES' => 'glibc.cpu.hwcaps=-AVX512F,-AVX512VL,-AVX2,-AVX_Fast_Unaligned_Load,-ERMS,-FSRM'
            . ':glibc.cpu.x86_non_temporal_threshold=0x40000000',
    ];

    /** In a profile: the name of the measurement, and what it comes to. */
    private const TOTAL = '/^desc: Trigger: Client Request: (\w+)\/(\w+)\/$.*^summary: (\d+)/ms';

    /** A ratio may grow by this much without being called slower. */
    private const TOLERANCE = 0.05;

    private const BASELINE = __DIR__ . '/../baseline.json';

    /** @param list<string> $workloads */
    public function __construct(private readonly Settings $settings, private readonly array $workloads)
    {
    }

    /** @return int the exit status */
    public function run(bool $record): int
    {
        $counts = $this->count();
        $now = \array_map(static fn (array $count): float => \round($count['ours'] / $count['hand'], 4), $counts);
        $recorded = Json::read(self::BASELINE);
        if ($record) {
            $ratios = $now + ($recorded['ratios'] ?? []);
            $this->record(\array_replace(\array_intersect_key(self::RENDERINGS, $ratios), $ratios));
        }
        return $this->report($counts, $now, $record ? $now : $recorded['ratios'] ?? []);
    }

    /** @return array<string, array{hand: float, ours: float}> instructions for a rendering, by workload */
    public function count(): array
    {
        $folder = $this->folder();
        \mkdir($folder);
        $command = [
            'valgrind',
            '--tool=callgrind',
            '--instr-atstart=no',
            "--callgrind-out-file=$folder/out",
            $this->settings->php,
            ...$this->settings->options(),
            '-d',
            'ffi.enable=1',
            \dirname(__DIR__) . '/instructions/count.php',
            $this->marks(),
            $this->settings->scratch,
            'hand,ours',
            \implode(',', $this->workloads),
        ];
        self::execute($command, "$folder/log");
        $counts = [];
        foreach (\glob("$folder/out.*") as $file) {
            if (\preg_match(self::TOTAL, \file_get_contents($file), $found)) {
                [, $workload, $engine, $instructions] = $found;
                $counts[$workload][$engine] = $instructions / self::RENDERINGS[$workload];
                \rename($file, $this->profile($workload, $engine));
            }
        }
        return \array_replace(\array_flip($this->workloads), $counts);
    }

    /** The profile that count() has left. */
    public function profile(string $workload, string $engine): string
    {
        return $this->folder() . "/$workload.$engine";
    }

    private function folder(): string
    {
        return $this->settings->scratch . '/callgrind';
    }

    /** Builds the library that marks the measurements for callgrind. */
    private function marks(): string
    {
        $log = $this->settings->scratch . '/marks.log';
        $library = $this->settings->scratch . '/marks.so';
        $source = \dirname(__DIR__) . '/instructions/marks.cpp';
        self::execute(['g++', '-O1', '-shared', '-fPIC', '-o', $library, $source], $log);
        return $library;
    }

    /** @param list<string> $command */
    private static function execute(array $command, string $log): void
    {
        $streams = [['file', '/dev/null', 'r'], ['file', $log, 'w'], ['redirect', 1]];
        $process = \proc_open($command, $streams, $pipes, null, self::ONE_FOR_ALL + \getenv());
        if ($process === false || \proc_close($process) !== 0) {
            throw new \RuntimeException("$command[0] failed: " . \file_get_contents($log));
        }
    }

    /** @param array<string, float> $ratios */
    private function record(array $ratios): void
    {
        Json::write(self::BASELINE, ['made with' => Machine::versions($this->settings), 'ratios' => $ratios]);
    }

    /**
     * A table, and the count that the test runner reads.
     *
     * @param array<string, array{hand: float, ours: float}> $counts
     * @param array<string, float> $now
     * @param array<string, float> $recorded
     */
    private function report(array $counts, array $now, array $recorded): int
    {
        $rows = [];
        $failures = 0;
        foreach ($counts as $workload => ['hand' => $hand, 'ours' => $ours]) {
            $change = isset($recorded[$workload]) ? $now[$workload] / $recorded[$workload] - 1 : \INF;
            $verdict = match (true) {
                $change === \INF => 'not recorded',
                $change > self::TOLERANCE => 'slower',
                $change < -self::TOLERANCE => 'faster: record it',
                default => 'as recorded',
            };
            $failures += $change > self::TOLERANCE ? 1 : 0;
            $rows[] = [
                $workload,
                \number_format($hand),
                \number_format($ours),
                \sprintf('%.4f', $now[$workload]),
                isset($recorded[$workload]) ? \sprintf('%.4f', $recorded[$workload]) : '',
                $change === \INF ? '' : \sprintf('%+.1f %%', 100 * $change),
                $verdict,
            ];
        }
        $head = ['workload', 'hand-written', 'template()', 'ratio', 'recorded', 'change', ''];
        echo Markdown::table($head, $rows), "\n";
        if ($failures > 0) {
            echo "More than 5 % above bench/baseline.json.\n";
            echo "If that is as it must be: ./dev bench --instructions --record\n";
        }
        \printf("%d passed, %d failed\n", \count($counts) - $failures, $failures);
        return $failures === 0 ? 0 : 1;
    }
}

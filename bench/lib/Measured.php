<?php

declare(strict_types=1);

namespace Bench;

/** What a worker process can be asked to do; see worker.php. */
final class Measured
{
    private Engine $engine;
    private string $expected;

    public function __construct(private readonly string $kind, private readonly string $scratch)
    {
    }

    /** Whether what the numbers rest on is so in this process. @return array<string, bool|string> */
    public function describe(): array
    {
        $opcache = \function_exists('opcache_get_status') ? \opcache_get_status(false) : false;
        return [
            'php' => \PHP_VERSION,
            'module' => (string) \phpversion('template'),
            'opcache' => $opcache !== false && $opcache['opcache_enabled'],
            'jit' => $opcache !== false && $opcache['jit']['on'],
            'debugger' => \extension_loaded('xdebug') || \extension_loaded('pcov'),
        ];
    }

    /** Sets the engine up for a workload and renders twice: the first time compiles. Returns where the output is. */
    public function prepare(string $workload, ?int $size = null): string
    {
        $this->setUp($workload, $size);
        $this->engine->render();
        $this->expected = $this->engine->render();
        $file = "$this->scratch/output-" . \getmypid();
        \file_put_contents($file, $this->expected);
        return $file;
    }

    /** How many renderings take about so long. */
    public function calibrate(float $milliseconds): int
    {
        for ($count = 1; ; $count *= 2) {
            $took = $this->time($count) / 1e6;
            if ($took > $milliseconds / 4) {
                return \max(1, (int) \round($count * $milliseconds / $took));
            }
        }
    }

    /** Nanoseconds of processor time for so many renderings: what others do meanwhile does not count. */
    public function time(int $count): int
    {
        $engine = $this->engine;
        $start = self::processorTime();
        for ($i = 0; $i < $count; $i++) {
            $output = $engine->render();
        }
        $took = self::processorTime() - $start;
        if ($output !== $this->expected) {
            throw new \RuntimeException("$this->kind: the output has changed between two renderings");
        }
        return $took;
    }

    /**
     * What one rendering takes at its peak above what was there before, in bytes: PHP's own account, and the
     * process's, which counts what PHP does not see. To be asked of a fresh process: memory that was given back
     * to the allocator would hide what is taken. A short mail comes first, so that the engine itself is loaded.
     *
     * @return array{php: int, process: int, output: int}
     */
    public function memory(string $workload, ?int $size = null): array
    {
        $this->setUp('mail', null);
        $this->engine->render();
        $this->setUp($workload, $size);
        \gc_collect_cycles();
        \file_put_contents('/proc/self/clear_refs', '5');
        \memory_reset_peak_usage();
        $php = \memory_get_usage();
        $process = self::status('VmRSS');
        $output = $this->engine->render();
        return [
            'php' => \memory_get_peak_usage() - $php,
            'process' => self::status('VmHWM') - $process,
            'output' => \strlen($output),
        ];
    }

    /** The files, compiled templates among them, that are not in opcache though all should be. @return list<string> */
    public function uncached(): array
    {
        $isMissing = static fn (string $file): bool => !\opcache_is_script_cached($file);
        return \array_values(\array_filter(\get_included_files(), $isMissing));
    }

    private function setUp(string $workload, ?int $size): void
    {
        if ($this->kind === 'text') {
            $this->engine = new engines\Text($workload, $size);
            return;
        }
        if ($this->kind === 'shape') {
            $this->engine = new engines\Shape($workload, $size);
            return;
        }
        $workload = new Workload($workload, $this->scratch);
        $data = $workload->data($size);
        $this->engine = match ($this->kind) {
            'ours' => new engines\Ours($workload, $data),
            'hand', 'jit' => new engines\HandWritten($workload, $data),
            'twig' => new engines\Twig($workload, $data, $this->scratch),
            'smarty' => new engines\Smarty($workload, $data, $this->scratch),
            'files' => new engines\Files($workload, $data),
            'copy' => new engines\Copy($workload, $data),
        };
    }

    /** In nanoseconds, to a microsecond; the kernel's work for us is part of it. */
    private static function processorTime(): int
    {
        $usage = \getrusage();
        $seconds = $usage['ru_utime.tv_sec'] + $usage['ru_stime.tv_sec'];
        $microseconds = $usage['ru_utime.tv_usec'] + $usage['ru_stime.tv_usec'];
        return 1000 * ($seconds * 1_000_000 + $microseconds);
    }

    private static function status(string $field): int
    {
        \preg_match("/^$field:\s+(\d+) kB/m", \file_get_contents('/proc/self/status'), $match);
        return 1024 * (int) $match[1];
    }
}

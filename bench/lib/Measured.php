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

    /** Sets the engine up and renders twice: the first time compiles. Returns the file that the output is in. */
    public function prepare(string $workload, int $seed): string
    {
        $this->setUp($workload, $seed);
        $this->engine->render();
        $this->expected = $this->engine->render();
        \file_put_contents($file = "$this->scratch/output-" . \getmypid(), $this->expected);
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
     * What one rendering takes of the system's memory at its peak, above what was there before, for each byte of the
     * output. To be asked of a fresh process: memory that was given back to the allocator would hide what is taken.
     * A short mail comes first, so that the engine itself is loaded.
     */
    public function memory(string $workload, int $seed): float
    {
        $this->setUp('mail', $seed);
        $this->engine->render();
        $this->setUp($workload, $seed);
        \file_put_contents('/proc/self/clear_refs', '5');
        $before = self::status('VmRSS');
        $output = $this->engine->render();
        return (self::status('VmHWM') - $before) / \strlen($output);
    }

    /** The files, compiled templates among them, that are not in opcache though all should be. @return list<string> */
    public function uncached(): array
    {
        $isMissing = static fn (string $file): bool => !\opcache_is_script_cached($file);
        return \array_values(\array_filter(\get_included_files(), $isMissing));
    }

    /** A workload with the data of a seed, or a shape of so many bytes. */
    private function setUp(string $workload, int $seed): void
    {
        if ($this->kind === 'shape') {
            $this->engine = new engines\Shape($workload, $seed);
            return;
        }
        $workload = new Workload($workload, $this->scratch);
        $data = $workload->data($seed);
        $this->engine = match ($this->kind) {
            'ours' => new engines\Ours($workload, $data),
            'hand', 'jit' => new engines\HandWritten($workload, $data),
            'twig' => new engines\Twig($workload, $data, $this->scratch),
            'smarty' => new engines\Smarty($workload, $data, $this->scratch),
            'floor' => new engines\Floor($workload, $data, $this->scratch),
        };
    }

    /** In nanoseconds, to a microsecond; the kernel's work for us is part of it. */
    private static function processorTime(): int
    {
        $usage = \getrusage();
        $seconds = $usage['ru_utime.tv_sec'] + $usage['ru_stime.tv_sec'];
        return 1000 * ($seconds * 1_000_000 + $usage['ru_utime.tv_usec'] + $usage['ru_stime.tv_usec']);
    }

    private static function status(string $field): int
    {
        \preg_match("/^$field:\s+(\d+) kB/m", \file_get_contents('/proc/self/status'), $match);
        return 1024 * (int) $match[1];
    }
}

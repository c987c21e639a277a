<?php

declare(strict_types=1);

namespace Bench;

/** The arguments of ./dev bench. */
final class Options
{
    /** What can be measured, by option; without any of these it is the side-by-side comparison. */
    private const MODES = ['check', 'growth', 'analysis', 'linear', 'fpm', 'micro', 'profile', 'instructions', 'all'];

    public const USAGE = <<<'TEXT'
        usage: ./dev bench [WORKLOAD…] [OPTION…]
          (none)          all engines side by side, on all workloads or those named
          --check         only compare the outputs of the engines, byte for byte
          --fpm           whole requests through php-fpm, each engine set up in each request
          --growth        time for a row, and memory for a byte of output, as the table grows
          --analysis      speed over plain text and over variable tags, as the template grows
          --linear        time for a byte of templates made to be slow, from 10 KB to 10 MB
          --micro         the parts of the extension one by one, in C++
          --instructions  instructions for a rendering, held against bench/baseline.json
          --profile       where those instructions go
          --all           all of these but --check, --linear and --instructions, as one report
        options:
          --record        with --instructions: write bench/baseline.json anew
          --runs N        runs with processes of their own (3)
          --rounds N      rounds in a run (15)
          --json FILE     the figures in full
          --into FILE     the report into a Markdown file, in place of the last one of its kind there
        The report goes to standard output, as Markdown.

        TEXT;

    /** @param list<string> $workloads */
    private function __construct(
        public readonly string $mode,
        public readonly array $workloads,
        public readonly int $runs,
        public readonly int $rounds,
        public readonly bool $record,
        public readonly ?string $json,
        public readonly ?string $into,
    ) {
    }

    /** @param list<string> $arguments */
    public static function parse(array $arguments): self
    {
        $mode = 'compare';
        $workloads = [];
        $values = ['--runs' => '3', '--rounds' => '15', '--json' => null, '--into' => null];
        $record = false;
        while (($argument = \array_shift($arguments)) !== null) {
            if (\array_key_exists($argument, $values)) {
                $values[$argument] = \array_shift($arguments) ?? throw new \RuntimeException("$argument needs a value");
            } elseif ($argument === '--help') {
                echo self::USAGE;
                exit(0);
            } elseif ($argument === '--record') {
                $record = true;
            } elseif (\str_starts_with($argument, '--') && \in_array(\substr($argument, 2), self::MODES, true)) {
                $mode = \substr($argument, 2);
            } elseif (isset(Workload::ALL[$argument])) {
                $workloads[] = $argument;
            } else {
                throw new \RuntimeException("neither a workload nor an option: $argument\n" . self::USAGE);
            }
        }
        return new self(
            $mode,
            $workloads ?: \array_keys(Workload::ALL),
            \max(1, (int) $values['--runs']),
            \max(1, (int) $values['--rounds']),
            $record,
            $values['--json'],
            $values['--into'],
        );
    }
}

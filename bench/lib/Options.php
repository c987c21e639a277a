<?php

declare(strict_types=1);

namespace Bench;

/** The arguments of ./dev bench, as tools/dev/bench describes them. */
final class Options
{
    private const MODES = ['check', 'linear', 'fpm', 'instructions'];

    /** @param list<string> $workloads empty for all */
    private function __construct(
        public readonly string $mode,
        public readonly array $workloads,
        public readonly int $seed,
        public readonly int $seeds,
        public readonly bool $record,
        public readonly ?string $into,
    ) {
    }

    /** @param list<string> $arguments */
    public static function parse(array $arguments): self
    {
        $mode = 'compare';
        $workloads = [];
        $values = ['--seed' => '1', '--seeds' => '3', '--into' => null];
        $record = false;
        while (($argument = \array_shift($arguments)) !== null) {
            if (\array_key_exists($argument, $values)) {
                $values[$argument] = \array_shift($arguments) ?? throw new \InvalidArgumentException("$argument needs a value");
            } elseif ($argument === '--record') {
                $record = true;
            } elseif (\str_starts_with($argument, '--') && \in_array(\substr($argument, 2), self::MODES, true)) {
                $mode = \substr($argument, 2);
            } elseif (isset(Workload::ALL[$argument])) {
                $workloads[] = $argument;
            } else {
                throw new \InvalidArgumentException("neither a workload nor an option: $argument; ./dev bench --help lists them");
            }
        }
        foreach (['--seed', '--seeds'] as $number) {
            if (!\ctype_digit($values[$number]) || (int) $values[$number] === 0) {
                throw new \InvalidArgumentException("$number needs a whole number above 0");
            }
        }
        return new self($mode, $workloads, (int) $values['--seed'], (int) $values['--seeds'], $record, $values['--into']);
    }
}

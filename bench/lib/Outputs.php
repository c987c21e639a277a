<?php

declare(strict_types=1);

namespace Bench;

/** Holds the outputs of all engines against each other: what is not equal byte for byte is not worth timing. */
final class Outputs
{
    /**
     * Sets a workload up in every worker and compares what comes out.
     *
     * @param array<string, Worker> $workers by engine; the hand-written one tells what is right
     * @return int the length of the output
     */
    public static function prepare(array $workers, string $workload, ?int $size = null): int
    {
        $expected = \file_get_contents($workers['hand']->prepare($workload, $size));
        foreach ($workers as $engine => $worker) {
            $output = \file_get_contents($worker->prepare($workload, $size));
            if ($output !== $expected) {
                throw new \RuntimeException("$workload: " . Engines::title($engine) . self::difference($output, $expected));
            }
            $uncached = $worker->uncached();
            if ($uncached !== []) {
                throw new \RuntimeException(Engines::title($engine) . ' runs without opcache: ' . \implode(', ', $uncached));
            }
        }
        return \strlen($expected);
    }

    private static function difference(string $output, string $expected): string
    {
        $at = \strspn($output ^ $expected, "\0");
        $show = static fn (string $text): string => \json_encode(\substr($text, \max(0, $at - 20), 60), \JSON_INVALID_UTF8_SUBSTITUTE);
        return " differs from the hand-written template at byte $at: " . $show($output) . ', not ' . $show($expected);
    }
}

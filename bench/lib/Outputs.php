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
                $difference = self::difference($output, $expected);
                throw new \RuntimeException("$workload: " . Engines::title($engine) . $difference);
            }
            $uncached = $worker->uncached();
            if ($uncached !== []) {
                $files = \implode(', ', $uncached);
                throw new \RuntimeException(Engines::title($engine) . " runs without opcache: $files");
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
}

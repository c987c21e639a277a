<?php

declare(strict_types=1);

namespace Bench;

/** Measures what was asked for and prints the report. */
final class Suite
{
    /** @return int the exit status */
    public static function run(Options $options, Settings $settings): int
    {
        if ($options->mode === 'check') {
            return self::check($options, $settings);
        }
        if ($options->mode === 'instructions') {
            return (new Instructions($settings, $options->workloads))->run($options->record);
        }
        $report = $options->into === null ? null : new Report($options->into, $options->mode);
        $figures = ['machine' => Machine::describe($settings)];
        $text = "## The machine\n\n" . Machine::report($figures['machine']);
        foreach (self::sections($options, $settings) as $name => $section) {
            Progress::say($section->title());
            $figures[$name] = $section->measure();
            $text .= "\n## " . $section->title() . "\n\n" . $section->report($figures[$name]);
        }
        $report === null ? print $text : $report->replace($text);
        if ($options->json !== null) {
            Json::write($options->json, $figures);
        }
        return 0;
    }

    /** @return array<string, Section> */
    private static function sections(Options $options, Settings $settings): array
    {
        $all = [
            'compare' => fn (): Section
                => new SideBySide($settings, $options->workloads, $options->runs, $options->rounds),
            'fpm' => fn (): Section => new Requests($settings, $options->rounds),
            'growth' => fn (): Section => new Growth($settings, $options->rounds),
            'analysis' => fn (): Section => new Analysis($settings, $options->rounds),
            'linear' => fn (): Section => new Linear($settings),
            'micro' => fn (): Section => new Micro(),
            'profile' => fn (): Section => new Profile(new Instructions($settings, $options->workloads)),
        ];
        $chosen = [$options->mode => $all[$options->mode] ?? null];
        if ($options->mode === 'all') {
            $chosen = \array_diff_key($all, ['linear' => true]);
        }
        return \array_map(static fn (\Closure $make): Section => $make(), $chosen);
    }

    /** A line for each workload, and the count that the test runner reads. */
    private static function check(Options $options, Settings $settings): int
    {
        $engines = Engines::available();
        $failures = 0;
        foreach ($options->workloads as $workload) {
            try {
                $length = (new SideBySide($settings, [$workload], 1, 1))->check()[$workload];
                echo "same output of all engines ($length bytes): $workload\n";
            } catch (\RuntimeException $failure) {
                echo $failure->getMessage(), "\n";
                $failures++;
            }
        }
        $missing = \array_diff(['twig', 'smarty'], $engines);
        if ($missing !== []) {
            echo 'Not installed, so not compared: ', \implode(', ', \array_map(Engines::title(...), $missing)), "\n";
        }
        \printf("%d passed, %d failed", \count($options->workloads) - $failures, $failures);
        echo $missing ? ', ' . \count($missing) . ' skipped' : '', "\n";
        return $failures === 0 ? 0 : 1;
    }
}

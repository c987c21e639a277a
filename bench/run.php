<?php

declare(strict_types=1);

// What ./dev bench runs; see README.md.

namespace Bench;

require __DIR__ . '/lib/bootstrap.php';

try {
    $options = Options::parse(\array_slice($argv, 1));
    $report = $options->into === null ? null : new Report($options->into);
    $settings = Settings::fromEnvironment();
    $settings->prepare();
    $all = \array_keys(Workload::ALL);
    $workloads = $options->workloads ?: $all;
    $withoutLarge = $options->workloads ?: \array_values(\array_diff($all, [Workload::LARGE]));
    $seeds = \range($options->seed, $options->seed + $options->seeds - 1);
    switch ($options->mode) {
        case 'check':
            exit((new SideBySide($settings, $withoutLarge, $seeds))->check());
        case 'instructions':
            exit((new Instructions($settings, $withoutLarge, $options->seed))->run($options->record));
        case 'linear':
            echo (new Linear($settings))->report();
            break;
        case 'fpm':
            echo (new Requests($settings, $options->seed))->report();
            break;
        case 'compare':
            $text = Machine::describe($settings) . "\n" . (new SideBySide($settings, $workloads, $seeds))->report();
            $report === null ? print $text : $report->replace($text);
    }
} catch (\InvalidArgumentException $mistake) {
    \fwrite(\STDERR, 'bench: ' . $mistake->getMessage() . "\n");
    exit(2);
} catch (\RuntimeException $failure) {
    \fwrite(\STDERR, 'bench: ' . $failure->getMessage() . "\n");
    exit(1);
}

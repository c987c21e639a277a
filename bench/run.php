<?php

declare(strict_types=1);

// What ./dev bench runs; see README.md.

namespace Bench;

require __DIR__ . '/lib/bootstrap.php';

try {
    $options = Options::parse(\array_slice($argv, 1));
    $settings = Settings::fromEnvironment();
    $settings->prepare();
    exit(Suite::run($options, $settings));
} catch (\RuntimeException $failure) {
    \fwrite(\STDERR, 'bench: ' . $failure->getMessage() . "\n");
    exit(1);
}

<?php

declare(strict_types=1);

// Every process of the suite begins here: classes are found by their names, and any notice ends the run.
\error_reporting(\E_ALL & ~\E_DEPRECATED & ~\E_USER_DEPRECATED);
\set_error_handler(static function (int $level, string $message, string $file, int $line): bool {
    if ((\error_reporting() & $level) === 0) {
        return false;
    }
    throw new \ErrorException($message, 0, $level, $file, $line);
});
\spl_autoload_register(static function (string $class): void {
    if (\str_starts_with($class, 'Bench\\')) {
        require __DIR__ . '/' . \str_replace('\\', '/', \substr($class, 6)) . '.php';
    }
});

<?php

declare(strict_types=1);

// PSR-4 for the classes of the command line, so that a checkout and a package work without composer.
spl_autoload_register(static function (string $class): void {
    $prefix = 'TemplateCli\\';
    if (str_starts_with($class, $prefix)) {
        $file = __DIR__ . '/src/' . strtr(substr($class, strlen($prefix)), '\\', '/') . '.php';
        if (is_file($file)) {
            require $file;
        }
    }
});

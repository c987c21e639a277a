<?php

declare(strict_types=1);

namespace TemplateCli;

/** Finds the extension when PHP was started without it. */
final class Extension
{
    private const string TRIED = 'TEMPLATE_CLI_TRIED';

    /** Starts PHP again with the extension, if it is somewhere where we would build or install it. */
    public static function loadOrGoOn(): void
    {
        if (Engine::isLoaded() || getenv(self::TRIED) !== false) {
            return;
        }
        $module = array_find(self::places(), static fn (string $file): bool => is_file($file));
        if ($module === null || !function_exists('pcntl_exec')) {
            return;
        }
        // A module that does not fit this PHP is not loaded; then once is enough.
        putenv(self::TRIED . '=1');
        @pcntl_exec(PHP_BINARY, ['-d', "extension=$module", ...$_SERVER['argv']]);
        putenv(self::TRIED);
    }

    public static function need(): void
    {
        Engine::isLoaded() ?: throw new UsageError(
            'The PHP extension "template" is not loaded. Build it ("./dev build" in the checkout) or install its package, or'
            . ' name the built module in the environment: TEMPLATE_SO=/path/to/template.so; docs/install.md tells more.',
        );
    }

    /** @return list<string> */
    private static function places(): array
    {
        return [
            (string) getenv('TEMPLATE_SO'),
            dirname(__DIR__, 2) . '/.build/plain/modules/template.so',
            dirname(__DIR__, 2) . '/modules/template.so',
            ini_get('extension_dir') . '/template.so',
        ];
    }
}

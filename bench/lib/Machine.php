<?php

declare(strict_types=1);

namespace Bench;

/** Where and with what the figures came about. */
final class Machine
{
    /** @return array<string, string> */
    public static function describe(Settings $settings): array
    {
        \preg_match('/^model name\s*: (.*)$/m', (string) @\file_get_contents('/proc/cpuinfo'), $processor);
        \preg_match('/^MemTotal:\s*(\d+)/m', (string) @\file_get_contents('/proc/meminfo'), $memory);
        $machine = [
            'date' => \gmdate('Y-m-d'),
            'processor' => \trim($processor[1] ?? 'unknown') . ', ' . \trim((string) \shell_exec('nproc')) . ' cores',
            'memory' => \round((int) ($memory[1] ?? 0) / 2 ** 20) . ' GB',
            'system' => \php_uname('s') . ' ' . \php_uname('r') . ', ' . \php_uname('m'),
            'load before' => Markdown::number(\sys_getloadavg()[0]),
            ...self::versions($settings),
        ];
        if (engines\Twig::isInstalled()) {
            $machine['Twig'] = engines\Twig::version();
        }
        if (engines\Smarty::isInstalled()) {
            $machine['Smarty'] = engines\Smarty::version();
        }
        return $machine;
    }

    /** @return array<string, string> */
    public static function versions(Settings $settings): array
    {
        $found = (new Worker($settings, 'ours'))->describe();
        return [
            'PHP' => $found['php'] . ' with opcache',
            'template' => $found['module'] . ', ' . self::compiler($settings->module),
        ];
    }

    /** @param array<string, string> $machine */
    public static function report(array $machine): string
    {
        $lines = '';
        foreach ($machine as $name => $value) {
            $lines .= "- $name: $value\n";
        }
        return $lines;
    }

    /** The compiler leaves its name in the module's .comment section. */
    private static function compiler(string $module): string
    {
        \preg_match('/GCC: \([^)]*\) [\d.]+|[\w ]*clang version [\d.]+/', \file_get_contents($module), $name);
        return $name[0] ?? 'compiler unknown';
    }
}

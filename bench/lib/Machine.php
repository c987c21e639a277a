<?php

declare(strict_types=1);

namespace Bench;

/** Where and with what the figures came about. */
final class Machine
{
    public static function describe(Settings $settings): string
    {
        \preg_match('/^model name\s*: (.*)$/m', (string) @\file_get_contents('/proc/cpuinfo'), $processor);
        $machine = [
            \gmdate('Y-m-d'),
            \trim($processor[1] ?? 'processor unknown') . ', load before ' . Markdown::number(\sys_getloadavg()[0]),
            \php_uname('s') . ' ' . \php_uname('r'),
            ...self::versions($settings),
            'Twig ' . engines\Twig::version(),
            'Smarty ' . engines\Smarty::version(),
        ];
        return \implode("; ", $machine) . ".\n";
    }

    /** @return list<string> */
    public static function versions(Settings $settings): array
    {
        $found = (new Worker($settings, 'ours'))->describe();
        // The compiler leaves its name in the module's .comment section.
        $name = '/GCC: \([^)]*\) [\d.]+|[\w ]*clang version [\d.]+/';
        \preg_match($name, \file_get_contents($settings->module), $compiler);
        return ["PHP $found[php] with opcache", "template $found[module]", $compiler[0] ?? 'compiler unknown'];
    }
}

<?php

declare(strict_types=1);

namespace Bench;

/** Which engines there are on this machine, and what the report calls them. */
final class Engines
{
    private const TITLES = [
        'hand' => 'hand-written',
        'jit' => 'hand-written, JIT',
        'ours' => 'template()',
        'twig' => 'Twig',
        'smarty' => 'Smarty',
        'files' => 'its files, read',
        'copy' => 'one copy',
    ];

    public static function title(string $engine): string
    {
        return self::TITLES[$engine];
    }

    /** @return list<string> */
    public static function available(): array
    {
        $missing = \array_filter(['twig' => !engines\Twig::isInstalled(), 'smarty' => !engines\Smarty::isInstalled()]);
        return \array_values(\array_diff(\array_keys(self::TITLES), \array_keys($missing)));
    }
}

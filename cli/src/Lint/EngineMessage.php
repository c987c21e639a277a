<?php

declare(strict_types=1);

namespace TemplateCli\Lint;

/** Compares a warning of the engine with the message that the scanner expects. */
final class EngineMessage
{
    /**
     * A message passes through PHP's formatter on its way: it ends at a NUL byte, and a "%" can come out changed.
     * So only what stands before the first of these is compared.
     */
    public static function isSame(string $warning, string $expected): bool
    {
        $expected = explode("\0", $expected, 2)[0];
        $percent = strpos($expected, '%');

        return $percent === false
            ? $warning === $expected
            : strncmp($warning, $expected, $percent) === 0;
    }
}

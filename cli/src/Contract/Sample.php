<?php

declare(strict_types=1);

namespace TemplateCli\Contract;

/** Data to fill in: a text for each name, and two rows for each repeated section. */
final class Sample
{
    private const int ROWS = 2;

    /** @return array<mixed> */
    public static function of(Shape $root): array
    {
        $data = [];
        foreach ($root->keys as $key => $shape) {
            // A number is never found at the top level.
            is_int($key) ?: $data[$key] = self::value($shape, $key);
        }

        return $data;
    }

    private static function value(Shape $shape, string $name): mixed
    {
        if ($shape->element !== null) {
            return self::rows($shape, $name);
        }
        if ($shape->keys !== []) {
            return self::entries($shape);
        }
        $compared = array_find($shape->usages, static fn (Usage $usage): bool => $usage->kind === UseKind::Comparison);
        $isOnlyTested = $shape->has(UseKind::Condition) && !$shape->has(UseKind::Text, UseKind::Escaped, UseKind::File);

        return $compared?->detail ?? ($isOnlyTested ? true : $name);
    }

    /** @return array<mixed> */
    private static function rows(Shape $shape, string $name): array
    {
        $entries = self::entries($shape);
        $rows = [];
        for ($row = 1; $row <= self::ROWS; ++$row) {
            $rows[] = self::value($shape->element, "$name $row");
        }
        // What else is in the array stands beside "num", which holds the rows; numbers are rows themselves.
        return array_all(array_keys($entries), static fn (int|string $key): bool => is_int($key)) ? $entries + $rows : ['num' => $rows] + $entries;
    }

    /** @return array<mixed> */
    private static function entries(Shape $shape): array
    {
        $entries = [];
        foreach ($shape->keys as $key => $inner) {
            $entries[$key] = self::value($inner, (string) $key);
        }
        ksort($entries);

        return $entries;
    }
}

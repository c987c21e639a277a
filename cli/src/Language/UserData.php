<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** Looks a path of keys up in an array of user data as the engine does. */
final class UserData
{
    /**
     * @param array<mixed> $data
     * @param list<string> $path
     */
    public static function find(array $data, array $path): mixed
    {
        $value = $data;
        foreach ($path as $depth => $key) {
            // Decimal numbers are indexes, which the top level does not have; a key "-1" is none, and never found.
            $number = (string) (int) $key === $key;
            if (!is_array($value) || ($number && ($depth === 0 || $key[0] === '-'))) {
                return null;
            }
            $value = $value[$key] ?? null;
        }

        return $value;
    }
}

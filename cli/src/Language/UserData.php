<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** Looks a path of keys up in an array of user data as the engine does. */
final class UserData
{
    /**
     * Follows the path from a value: from the top of the data when that slot's path is empty.
     *
     * @param list<string> $path
     */
    public static function lookup(Slot $from, array $path): Lookup
    {
        foreach ($path as $step => $key) {
            // Decimal numbers are indexes, which the top level does not have; a key "-1" is none, and never found.
            $isNumber = (string) (int) $key === $key;
            $found = $from->isOpen() && !($isNumber && ($from->path === [] || $key[0] === '-')) ? $from->at($key) : null;
            if ($found === null) {
                return new Lookup(null, $from, $step);
            }
            $from = $found;
        }

        return new Lookup($from, $from, count($path));
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Check;

use TemplateCli\Language\Slot;

/** What the engine makes of a value, and how it is called in a sentence. */
final class Value
{
    public static function name(Slot $slot): string
    {
        return match (true) {
            $slot->isReference => 'a PHP reference',
            $slot->value === null => 'null',
            is_bool($slot->value) => $slot->value ? 'true' : 'false',
            is_int($slot->value), is_float($slot->value) => "the number $slot->value",
            is_string($slot->value) => 'a text',
            is_array($slot->value) => 'an array',
            is_object($slot->value) => 'an object (' . $slot->value::class . ')',
            default => get_debug_type($slot->value),
        };
    }

    public static function hasNoText(Slot $slot): bool
    {
        return is_object($slot->value) && !$slot->value instanceof \Stringable;
    }

    /** Stands for "nothing there" as a rule: null, false, an empty text. */
    public static function isNothing(Slot $slot): bool
    {
        return !$slot->isReference && in_array($slot->value, [null, false, ''], true);
    }

    /** Is a condition over this value true? */
    public static function isShown(?Slot $slot, string $compare): bool
    {
        if ($slot === null) {
            return false;
        }
        if ($compare === '') {
            return $slot->isOpen() && array_key_exists('visible', $slot->value)
                ? (bool) $slot->value['visible']
                : (bool) $slot->value;
        }
        $compare = self::unquoted($compare);

        return match (true) {
            $slot->isReference => false,
            is_string($slot->value) => explode("\0", $slot->value, 2)[0] === $compare,
            is_int($slot->value) => $slot->value === self::leadingInteger($compare),
            is_bool($slot->value) => ($compare === '0') !== $slot->value,
            default => false,
        };
    }

    public static function unquoted(string $compare): string
    {
        return preg_match("/'(.*)'/s", $compare, $quoted) === 1 ? $quoted[1] : $compare;
    }

    /** The number at the beginning of a text; 0 when there is none, or it is too large. */
    public static function leadingInteger(string $text): int
    {
        preg_match('/^-?[0-9]*/', $text, $digits);
        $value = filter_var(preg_replace('/^(-?)0+(?=[0-9])/', '$1', $digits[0]), FILTER_VALIDATE_INT);

        return $value === false ? 0 : $value;
    }
}

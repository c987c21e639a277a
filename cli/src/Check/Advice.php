<?php

declare(strict_types=1);

namespace TemplateCli\Check;

use TemplateCli\Language\Lookup;
use TemplateCli\Language\Reference;
use TemplateCli\Language\ReferenceKind;
use TemplateCli\Language\Slot;

/** For a name that is not there: the one that was probably meant. */
final class Advice
{
    /** @param list<Repetition> $sections those that are open, outermost first */
    public static function for(Reference $reference, Lookup $lookup, Slot $root, array $sections): string
    {
        $meant = self::nearest($reference->path[$lookup->steps], $lookup->last)
            ?? self::elsewhere($reference, $root, $sections);

        return $meant === null ? '' : "did you mean \"$meant\"?";
    }

    private static function nearest(string $key, Slot $in): ?string
    {
        if (!$in->isOpen() || strlen($key) > 255) {
            return null;
        }
        $best = null;
        $distance = match (true) {
            strlen($key) <= 3 => 2,
            strlen($key) <= 8 => 3,
            default => 4,
        };
        foreach (array_slice(array_filter(array_keys($in->value), is_string(...)), 0, 1_000) as $candidate) {
            if (self::plain($candidate) === self::plain($key)) {
                return $candidate;
            }
            $found = strlen($candidate) > 255 ? $distance : levenshtein($key, $candidate);
            if ($found < $distance && $found < strlen($key)) {
                [$best, $distance] = [$candidate, $found];
            }
        }

        return $best;
    }

    /** "First_Name" and "first name" are one name to a reader. */
    private static function plain(string $key): string
    {
        return strtolower(preg_replace('/[\s_-]+/', '', $key));
    }

    /**
     * The same name in another place: in an element of an open section, at the top level, in one of its arrays.
     *
     * @param list<Repetition> $sections
     */
    private static function elsewhere(Reference $reference, Slot $root, array $sections): ?string
    {
        $key = $reference->path[0];
        if ($reference->kind !== ReferenceKind::Root) {
            return is_numeric($key) || !array_key_exists($key, $root->value) ? null : implode('::', $reference->path);
        }
        foreach (array_reverse($sections) as $section) {
            if ($section->element->isOpen() && array_key_exists($key, $section->element->value)) {
                return ($section->name === '' ? '' : "$section->name::") . '*::' . implode('::', $reference->path);
            }
        }
        foreach (array_slice($root->value, 0, 1_000, true) as $name => $value) {
            if (is_array($value) && !array_is_list($value) && array_key_exists($key, $value)) {
                return "$name::" . implode('::', $reference->path);
            }
        }

        return null;
    }
}

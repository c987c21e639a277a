<?php

declare(strict_types=1);

namespace TemplateCli\Check;

use TemplateCli\Language\Lookup;
use TemplateCli\Language\Slot;
use TemplateCli\Language\UserData;

/** What a repeated section goes over. */
final readonly class Iterated
{
    private function __construct(
        public Lookup $lookup,
        /** The value that the elements are taken from; null for none. */
        public ?Slot $slot,
        /** The entry "num" that takes the array's place. */
        public ?Slot $num,
    ) {
    }

    /** @param list<string> $path */
    public static function overTop(Slot $root, array $path): self
    {
        $lookup = UserData::lookup($root, $path);
        $num = self::num($lookup->slot);
        $slot = $num ?? $lookup->slot;

        return new self($lookup, is_array($slot?->value) ? $slot : null, $num);
    }

    /** @param list<string> $path */
    public static function overElement(Slot $element, array $path): self
    {
        $lookup = UserData::lookup($element, $path);
        if (!($lookup->slot?->isOpen() ?? false)) {
            return new self($lookup, null, null);
        }
        $num = self::num($lookup->slot);
        $slot = $num ?? $lookup->slot;
        $isWalked = !$slot->isReference && (is_array($slot->value) || is_object($slot->value));

        return new self($lookup, $isWalked ? $slot : null, $num);
    }

    private static function num(?Slot $slot): ?Slot
    {
        return $slot?->isOpen() ? $slot->at('num') : null;
    }
}

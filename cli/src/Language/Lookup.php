<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** How far a path led. */
final readonly class Lookup
{
    public function __construct(
        /** What the path names; null when it led nowhere. */
        public ?Slot $slot,
        /** The last value on the way. */
        public Slot $last,
        /** How many steps there were up to it. */
        public int $steps,
    ) {
    }
}

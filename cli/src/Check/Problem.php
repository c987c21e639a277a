<?php

declare(strict_types=1);

namespace TemplateCli\Check;

use TemplateCli\Language\Place;

/** Something that is wrong between a template and its data. */
final class Problem
{
    /** How many more of the kind there are at this tag, which are not told one by one. */
    public int $more = 0;

    public function __construct(
        public readonly Place $place,
        public readonly Rule $rule,
        /** Where in the data, as keys joined by "::"; empty when it is not about a value. */
        public readonly string $path,
        public readonly string $message,
        /** What helps to find the cause. */
        public readonly string $note = '',
    ) {
    }

    public function text(): string
    {
        $path = $this->path === '' ? '' : "$this->path: ";
        $notes = array_filter([$this->note, $this->more > 0 ? "and $this->more more like this" : '']);

        return "$path$this->message" . ($notes === [] ? '' : ' (' . implode('; ', $notes) . ')');
    }

    public function __toString(): string
    {
        return "$this->place: {$this->text()} [{$this->rule->value}]";
    }
}

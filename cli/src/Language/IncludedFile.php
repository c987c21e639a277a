<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** An include tag that was resolved to a name. */
final readonly class IncludedFile
{
    /** @param list<string> $sections names of the repeated sections open around the tag; '' when any is open */
    public function __construct(public Place $place, public string $name, public array $sections)
    {
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Check;

use TemplateCli\Language\Slot;

/** A repeated section at one of its elements. */
final class Repetition
{
    public string $key = '';
    public Slot $element;

    public function __construct(public readonly string $name)
    {
    }
}

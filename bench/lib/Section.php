<?php

declare(strict_types=1);

namespace Bench;

/** One part of the report. */
interface Section
{
    public function title(): string;

    /** Takes the measurements, as they go into the JSON file. @return array<string, mixed> */
    public function measure(): array;

    /** Tells them as Markdown. @param array<string, mixed> $figures */
    public function report(array $figures): string;
}

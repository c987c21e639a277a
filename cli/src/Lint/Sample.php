<?php

declare(strict_types=1);

namespace TemplateCli\Lint;

/** Data to try templates with, and where they are from. */
final readonly class Sample
{
    /** @param array<mixed> $data */
    public function __construct(public string $source, public array $data)
    {
    }
}

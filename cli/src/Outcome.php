<?php

declare(strict_types=1);

namespace TemplateCli;

/** What a call of template() gave: a result or a fault, and what PHP complained about besides. */
final readonly class Outcome
{
    /** @param list<string> $notices */
    public function __construct(public ?string $result, public ?string $fault, public array $notices)
    {
    }
}

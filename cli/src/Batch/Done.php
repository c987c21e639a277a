<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

/** How far a run has come. */
final class Done
{
    public function __construct(public int $rows = 0, public int $faults = 0)
    {
    }
}

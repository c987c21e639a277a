<?php

declare(strict_types=1);

namespace Bench\engines;

use Bench\Engine;
use Bench\Workload;

use function template;

/** The extension: it keeps nothing between calls, so there is nothing to set up. */
final class Ours implements Engine
{
    private readonly string $source;
    private readonly bool $isString;

    /** @param array<string, mixed> $data */
    public function __construct(Workload $workload, private readonly array $data)
    {
        $file = $workload->template('tpl');
        $this->isString = $workload->isString;
        $this->source = $workload->isString ? \file_get_contents($file) : $file;
    }

    public function render(): string
    {
        return template($this->source, $this->data, $this->isString);
    }
}

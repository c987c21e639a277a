<?php

declare(strict_types=1);

namespace Bench\engines;

use Bench\Engine;
use Bench\Workload;

/**
 * What a PHP programmer writes without an engine, at its fastest: a template in PHP under opcache that reads $data
 * (no extract()), taken in with output buffering. A string template has no better counterpart than such a file.
 */
final class HandWritten implements Engine
{
    private readonly string $file;

    /** @param array<string, mixed> $data */
    public function __construct(Workload $workload, private readonly array $data)
    {
        $this->file = $workload->template('php');
    }

    public function render(): string
    {
        $data = $this->data;
        \ob_start();
        include $this->file;
        return \ob_get_clean();
    }
}

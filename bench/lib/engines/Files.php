<?php

declare(strict_types=1);

namespace Bench\engines;

use Bench\Engine;
use Bench\Workload;

/**
 * Reads the files of our template, as PHP reads files, and makes nothing of them: what an engine that keeps no
 * compiled form has to do before it can begin. Delivers the output, so that it can stand beside the others.
 */
final class Files implements Engine
{
    /** @var list<string> */
    private readonly array $files;
    private readonly string $output;

    /** @param array<string, mixed> $data */
    public function __construct(Workload $workload, array $data)
    {
        $this->output = (new HandWritten($workload, $data))->render();
        $this->files = $workload->isString ? [] : \glob(\dirname($workload->template('tpl')) . '/*.tpl');
    }

    public function render(): string
    {
        foreach ($this->files as $file) {
            \file_get_contents($file);
        }
        return $this->output;
    }
}

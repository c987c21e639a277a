<?php

declare(strict_types=1);

namespace Bench\engines;

use Bench\Engine;
use Bench\Native;
use Bench\Workload;

/**
 * What an engine that keeps no compiled form cannot do without: the bare system calls that read the files of our
 * template, and one copy of the output into a new string.
 */
final class Floor implements Engine
{
    private readonly \FFI $native;
    private readonly string $files;
    private readonly int $count;

    /** One byte longer than the output: a part of a string has to be copied, the whole of one is only counted. */
    private readonly string $text;

    /** @param array<string, mixed> $data */
    public function __construct(Workload $workload, array $data, string $scratch)
    {
        $this->native = Native::load($scratch);
        $this->text = (new HandWritten($workload, $data))->render() . "\0";
        $files = $workload->isString ? [] : \glob(\dirname($workload->template('tpl')) . '/*.tpl');
        $this->files = \implode("\0", $files);
        $this->count = \count($files);
    }

    public function render(): string
    {
        if ($this->count > 0) {
            $this->native->read_files($this->files, $this->count);
        }
        return \substr($this->text, 0, -1);
    }
}

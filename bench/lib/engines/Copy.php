<?php

declare(strict_types=1);

namespace Bench\engines;

use Bench\Engine;
use Bench\Workload;

/** One copy of the output into a new string: what no engine can do without, and so the floor of every line. */
final class Copy implements Engine
{
    /** One byte longer than the output: a part of a string has to be copied, the whole of one is only counted. */
    private readonly string $text;

    /** @param array<string, mixed> $data */
    public function __construct(Workload $workload, array $data)
    {
        $this->text = (new HandWritten($workload, $data))->render() . "\0";
    }

    public function render(): string
    {
        return \substr($this->text, 0, -1);
    }
}

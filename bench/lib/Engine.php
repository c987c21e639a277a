<?php

declare(strict_types=1);

namespace Bench;

/** One way to render a workload. Whatever is done once in the life of a process is done when it is constructed. */
interface Engine
{
    public function render(): string;
}

<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

/** One input line and what became of it: a result or a fault. */
final readonly class Row
{
    /**
     * @param array<mixed> $data
     * @param list<string> $notices
     */
    public function __construct(
        public int $line,
        public array $data,
        public ?string $result,
        public ?string $fault,
        public array $notices = [],
    ) {
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

/** What a sink needs of a row to keep its result. Making it needs nothing of the other rows, so any process can. */
final readonly class Packed
{
    /** @param list<string> $notices */
    public function __construct(
        public int $line,
        public string $bytes,
        /** The row's own fault, or why its result cannot be kept. */
        public ?string $fault,
        public array $notices,
        /** The file that the result is for. */
        public string $name = '',
    ) {
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

/** A line of a manifest: what a run over one part has read and written. The digests are of bytes of files. */
final readonly class PartRecord
{
    public function __construct(
        public string $part,
        public int $from,
        public int $to,
        public int $rows,
        public int $faults,
        public string $template,
        public string $read,
        public int $bytes,
        public string $written,
    ) {
    }
}

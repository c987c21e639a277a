<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\UsageError;

/** Digests of ranges of a file. They tell damage and mistakes, not forgery. */
final class ByteDigest
{
    public readonly int $size;
    /** @var resource */
    public readonly mixed $stream;

    public function __construct(string $file)
    {
        $stream = is_file($file) ? @fopen($file, 'rb') : false;
        if ($stream === false) {
            throw new UsageError("Could not read $file; it must be a file, as its parts are told by bytes.");
        }
        $this->stream = $stream;
        $this->size = fstat($stream)['size'];
    }

    /** Null when the file ends before. */
    public function of(int $from, int $to): ?string
    {
        $hash = hash_init('xxh128');
        fseek($this->stream, $from);

        return hash_update_stream($hash, $this->stream, $to - $from) === $to - $from ? hash_final($hash) : null;
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\StandardInput;
use TemplateCli\UsageError;

/** Reads lines from a file or a pipe, one at a time. */
final class RowReader
{
    /** Lines read so far. */
    public private(set) int $lines = 0;
    /** Bytes read so far. */
    public private(set) int $bytes = 0;
    /** The whole input, or the part that is read; null when it comes through a pipe. */
    public readonly ?int $size;

    /** @var resource */
    private $stream;
    private ?string $ahead = null;

    /** @param ?Part $part the rows to read, when not all; they must be in a file then */
    public function __construct(string $file, private readonly ?Part $part = null)
    {
        $stream = $file === '-' ? StandardInput::open() : @fopen($file, 'rb');
        if ($stream === false || is_dir($file)) {
            throw new UsageError("Could not read the rows in $file.");
        }
        $this->stream = $stream;
        $stat = fstat($stream);
        $size = $stat !== false && ($stat['mode'] & 0o170000) === 0o100000 ? $stat['size'] : null;
        if ($part !== null) {
            $size ??= throw new UsageError('--part needs a file with the rows: its share of them is told by bytes.');
            [$start, $end] = $part->bounds($stream, $size);
            fseek($stream, $start);
            $size = $end - $start;
        }
        $this->size = $size;
    }

    /** The next line without its line feed; null at the end. */
    public function next(): ?string
    {
        $line = $this->ahead ?? $this->line();
        $this->ahead = null;
        if ($line === false) {
            return null;
        }
        ++$this->lines;
        $this->bytes += strlen($line);

        return str_ends_with($line, "\n") ? substr($line, 0, -1) : $line;
    }

    /** The line that next() will return; empty at the end. */
    public function peek(): string
    {
        $line = $this->line();
        $this->ahead = $line === false ? null : $line;

        return (string) $this->ahead;
    }

    /** Reads lines away; false when there were fewer. */
    public function skip(int $lines): bool
    {
        while ($lines-- > 0) {
            if ($this->next() === null) {
                return false;
            }
        }

        return true;
    }

    /** Would next() answer at once? Waits up to $seconds for that; a signal ends the waiting. */
    public function isReady(int $seconds = 0): bool
    {
        if ($this->size !== null || $this->ahead !== null) {
            return true;
        }
        [$read, $none] = [[$this->stream], null];

        return @stream_select($read, $none, $none, $seconds) > 0;
    }

    private function line(): string|false
    {
        return $this->part !== null && $this->bytes >= $this->size ? false : fgets($this->stream);
    }
}

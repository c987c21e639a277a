<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\UsageError;

/** Holds results against a manifest, without rendering anything again. */
final class Verification
{
    /** @var list<string> */
    public private(set) array $faults = [];
    public private(set) Done $done;
    /** @var array<string, PartRecord> by part, in the order of the rows */
    private array $records = [];

    /** @param ?Part $only the part that the results are of; null when they are all of them */
    public function __construct(Manifest $manifest, private readonly ?Part $only)
    {
        $this->done = new Done();
        foreach ($manifest->read() as $record) {
            $before = $this->records[$record->part] ?? $record;
            $this->records[$record->part] = $record;
            // A part that was rendered twice does no harm: the same rows give the same results.
            $before == $record || $this->faults[] = "part $record->part is in the manifest twice, with different results";
        }
    }

    public function hold(ByteDigest $rows, string $template, ByteDigest $results): void
    {
        $at = 0;
        foreach ($this->parts() as $part) {
            $record = $this->records[(string) $part] ?? null;
            if ($record === null) {
                $this->faults[] = "part $part is missing from the manifest";
                continue;
            }
            $this->holdOrigin($part, $record, $rows, $template);
            // What follows a part that is missing or has grown is not where it should be: the first one tells.
            if ($at !== null && $results->of($at, $at + $record->bytes) !== $record->written) {
                $this->faults[] = "part $part is not in the results as it was written; what follows was not compared";
                $at = null;
            }
            $at = $at === null ? null : $at + $record->bytes;
            $this->done->rows += $record->rows;
            $this->done->faults += $record->faults;
        }
        if ($at !== null && $this->faults === [] && $at < $results->size) {
            $this->faults[] = 'the results go on after the last part';
        }
    }

    private function holdOrigin(Part $part, PartRecord $record, ByteDigest $rows, string $template): void
    {
        $bounds = $part->bounds($rows->stream, $rows->size);
        if ([$record->from, $record->to] !== $bounds || $rows->of(...$bounds) !== $record->read) {
            $this->faults[] = "part $part was rendered from other rows";
        }
        if ($record->template !== $template) {
            $this->faults[] = "part $part was rendered with another template";
        }
    }

    /** @return iterable<Part> */
    private function parts(): iterable
    {
        if ($this->only !== null) {
            return [$this->only];
        }
        $counts = [];
        foreach ($this->records as $record) {
            $counts[Part::parse($record->part)->count] = true;
        }
        if (count($counts) !== 1) {
            $parts = implode(', ', array_keys($this->records)) ?: 'none';
            throw new UsageError("The manifest is not of one run: its parts are $parts.");
        }

        return array_map(fn (int $index): Part => new Part($index, key($counts)), range(1, key($counts)));
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\AtomicFile;
use TemplateCli\Json;
use TemplateCli\UsageError;

/** A file with a line for each part that was rendered. Those of several runs can be put behind each other. */
final readonly class Manifest
{
    public function __construct(private string $file)
    {
    }

    /** What an earlier run wrote must not stand for one that did not come to its end. */
    public function remove(): void
    {
        if (is_file($this->file) && !@unlink($this->file)) {
            throw new UsageError("Could not write $this->file.");
        }
    }

    public function write(PartRecord $record): void
    {
        AtomicFile::replace($this->file, Json::line($record) . "\n");
    }

    /** @return list<PartRecord> */
    public function read(): array
    {
        $lines = is_dir($this->file) ? false : @file($this->file, FILE_IGNORE_NEW_LINES);
        if ($lines === false) {
            throw new UsageError("Could not read the manifest $this->file.");
        }
        $records = [];
        foreach ($lines as $number => $line) {
            try {
                $records[] = new PartRecord(...Json::data($line));
            } catch (\JsonException|\Error) {
                throw new UsageError("$this->file is not a manifest: see its line " . ($number + 1) . '.');
            }
        }

        return $records;
    }
}

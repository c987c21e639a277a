<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\AtomicFile;
use TemplateCli\Failure;
use TemplateCli\UsageError;

/** A file for each row. No file is ever overwritten, so that two rows with one name are noticed. */
final class FileSink implements Sink
{
    private Journal $journal;
    private Done $done;
    private string $knownFolder = '';
    /** The row that a killed run may have been at. */
    private ?int $inDoubt = null;

    public function __construct(
        private readonly FileNames $names,
        private readonly bool $resume,
        private readonly bool $force,
    ) {
        $this->makeFolder($names->folder === '' ? '.' : $names->folder);
    }

    public function prepare(RowReader $rows, RowRenderer $renderer): Done
    {
        // By its first row, so that runs over parts of the rows do not get into each other's way.
        $part = hash('xxh3', $this->names->pattern . $rows->peek());
        $journal = "{$this->names->folder}.template-batch-$part";
        $this->journal = Journal::open($journal, $renderer->fingerprint(), $this->resume, $this->force);
        $this->done = $this->journal->read();
        if (!$rows->skip($this->done->rows)) {
            throw new UsageError('There are fewer rows than the interrupted run has done already.');
        }
        $this->inDoubt = $this->resume ? $this->done->rows + 1 : null;

        return clone $this->done;
    }

    public function put(Row $row): ?string
    {
        $fault = $row->fault ?? $this->write($row);
        ++$this->done->rows;
        $this->done->faults += (int) ($fault !== null);
        $this->journal->write($this->done);

        return $fault;
    }

    public function flush(): void
    {
    }

    public function complete(): void
    {
        $this->journal->remove();
    }

    private function write(Row $row): ?string
    {
        [$name, $fault] = $this->names->of($row);
        if ($name === null) {
            return $fault;
        }
        $this->makeFolder(dirname($name));
        if ($row->line === $this->inDoubt) {
            AtomicFile::removeRests($name);
        }
        if ($this->force) {
            AtomicFile::replace($name, $row->result);
        } elseif (!AtomicFile::create($name, $row->result) && !$this->isOurs($row, $name)) {
            return "$name is there already, from another row or an earlier run";
        }

        return null;
    }

    /** A run that was killed may have written its last file without noting it down. */
    private function isOurs(Row $row, string $name): bool
    {
        return $this->resume && @file_get_contents($name) === $row->result;
    }

    private function makeFolder(string $folder): void
    {
        if ($folder === $this->knownFolder) {
            return;
        }
        if (!is_dir($folder) && !@mkdir($folder, recursive: true) && !is_dir($folder)) {
            throw new Failure("Could not make the folder $folder");
        }
        $this->knownFolder = $folder;
    }
}

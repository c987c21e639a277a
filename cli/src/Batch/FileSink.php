<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\AtomicFile;
use TemplateCli\Failure;
use TemplateCli\UsageError;

/** A file for each row. No file is ever overwritten, so that two rows with one name are noticed. */
final class FileSink implements Sink
{
    /** What is wrong with the name of a file, and not with the disk that it should be on. */
    private const string OWN_FAULT = '~: (File name too long|Not a directory|Is a directory|File exists|Invalid argument)$~D';

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

    public function pack(Row $row): Packed
    {
        [$name, $fault] = $row->fault === null ? $this->names->of($row) : [null, $row->fault];

        return new Packed($row->line, (string) $row->result, $fault, $row->notices, (string) $name);
    }

    public function put(Packed $row): ?string
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

    private function write(Packed $row): ?string
    {
        try {
            $this->makeFolder(dirname($row->name));
            if ($row->line === $this->inDoubt) {
                AtomicFile::removeRests($row->name);
            }
            if ($this->force) {
                AtomicFile::replace($row->name, $row->bytes);
            } elseif (!AtomicFile::create($row->name, $row->bytes) && !$this->isOurs($row)) {
                return "$row->name is there already, from another row or an earlier run";
            }
        } catch (Failure $failure) {
            // A full disk or a missing permission would stop every further row as well.
            return preg_match(self::OWN_FAULT, $failure->getMessage()) === 1 ? $failure->getMessage() : throw $failure;
        }

        return null;
    }

    /** A run that was killed may have written its last file without noting it down. */
    private function isOurs(Packed $row): bool
    {
        return $this->resume && @file_get_contents($row->name) === $row->bytes;
    }

    private function makeFolder(string $folder): void
    {
        if ($folder === $this->knownFolder) {
            return;
        }
        error_clear_last();
        if (!is_dir($folder) && !@mkdir($folder, recursive: true) && !is_dir($folder)) {
            $reason = preg_replace('~^.*: ~', '', error_get_last()['message'] ?? 'unknown error');
            throw new Failure("Could not make the folder $folder: $reason");
        }
        $this->knownFolder = $folder;
    }
}

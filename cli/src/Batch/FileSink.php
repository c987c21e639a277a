<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\AtomicFile;
use TemplateCli\Failure;
use TemplateCli\UsageError;

/** A file for each row. No file is ever overwritten, so that two rows with one name are noticed. */
final class FileSink implements Sink
{
    private readonly Journal $journal;
    private string $identity = '';
    private Done $done;
    private string $knownFolder = '';

    public function __construct(
        private readonly FileNames $names,
        private readonly bool $resume,
        private readonly bool $force,
    ) {
        $this->makeFolder($names->folder === '' ? '.' : $names->folder);
        $this->journal = Journal::open("$names->folder.template-batch", $resume, $force);
    }

    public function prepare(RowReader $rows, RowRenderer $renderer): Done
    {
        $of = [$renderer->fingerprint(), hash('xxh3', $this->names->pattern), hash('xxh3', $rows->peek())];
        $this->identity = implode(' ', $of);
        $this->done = $this->journal->read($this->identity);
        if (!$rows->skip($this->done->rows)) {
            throw new UsageError('There are fewer rows than the interrupted run has done already.');
        }

        return clone $this->done;
    }

    public function put(Row $row): ?string
    {
        $fault = $row->fault ?? $this->write($row);
        ++$this->done->rows;
        $this->done->faults += (int) ($fault !== null);
        $this->journal->write($this->identity, $this->done);

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

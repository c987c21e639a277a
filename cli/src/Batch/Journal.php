<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\Failure;
use TemplateCli\UsageError;

/**
 * Remembers how many rows are done, when each row goes to a file of its own.
 *
 * The first line stands for the template; the second, of fixed length, is written over in one go after each row. A
 * run that is killed between a row's file and this line does that one row again, with the same outcome.
 */
final class Journal
{
    private const string STATE = "%020d %020d\n";
    private const string READ_STATE = '%d %d';

    private ?int $stateAt = null;

    /** @param resource $stream */
    private function __construct(
        private readonly mixed $stream,
        private readonly string $file,
        private readonly string $template,
    ) {
    }

    /** @param string $template the fingerprint of the template */
    public static function open(string $file, string $template, bool $resume, bool $force): self
    {
        if (!$resume && !$force && is_file($file)) {
            throw new UsageError("$file is left from an interrupted run: --resume goes on with it, --force starts anew.");
        }
        $stream = @fopen($file, 'c+b');
        if ($stream === false) {
            throw new UsageError("Could not write $file.");
        }
        if (!flock($stream, LOCK_EX | LOCK_NB)) {
            throw new UsageError("Another run is using $file.");
        }
        if (!$resume) {
            ftruncate($stream, 0);
        }

        return new self($stream, $file, $template);
    }

    /** What an earlier run of the same kind has done. */
    public function read(): Done
    {
        $found = fgets($this->stream);
        $state = fgets($this->stream);
        if ($state === false || sscanf($state, self::READ_STATE, $rows, $faults) !== 2) {
            // Killed before its first row was done.
            ftruncate($this->stream, 0);

            return new Done();
        }
        if ($found !== "$this->template\n") {
            throw new UsageError("$this->file is of a run with another template; --force starts anew.");
        }
        $this->stateAt = strlen($found);

        return new Done($rows, $faults);
    }

    public function write(Done $done): void
    {
        $state = sprintf(self::STATE, $done->rows, $done->faults);
        if ($this->stateAt === null) {
            $this->stateAt = strlen($this->template) + 1;
            rewind($this->stream);
            $state = "$this->template\n$state";
        } else {
            fseek($this->stream, $this->stateAt);
        }
        if (@fwrite($this->stream, $state) !== strlen($state)) {
            throw new Failure("Could not write $this->file");
        }
    }

    public function remove(): void
    {
        @unlink($this->file);
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\Failure;
use TemplateCli\Json;
use TemplateCli\UsageError;

/**
 * One JSON line for each row, in the same order: a string with the result, or an object with the error.
 *
 * In a file these lines are themselves the journal: as many rows are done as there are whole lines. So a run that
 * was killed at any point is resumed by cutting off the line that is not whole, and skipping so many rows.
 */
final class LineSink implements Sink
{
    private const int BUFFER = 65_536;

    private string $buffer = '';

    /** @param resource $stream */
    private function __construct(
        private readonly mixed $stream,
        private readonly string $name,
        private readonly bool $resume,
    ) {
    }

    public static function onStandardOutput(): self
    {
        return new self(STDOUT, 'standard output', false);
    }

    public static function inFile(string $file, bool $resume, bool $force): self
    {
        if (!$resume && !$force && is_file($file) && filesize($file) > 0) {
            throw new UsageError("$file is there already: --resume goes on with it, --force starts anew.");
        }
        $stream = @fopen($file, 'c+b');
        if ($stream === false) {
            throw new UsageError("Could not write $file.");
        }
        if (!flock($stream, LOCK_EX | LOCK_NB)) {
            throw new UsageError("Another run is writing $file.");
        }
        if (!$resume && fstat($stream)['size'] > 0) {
            ftruncate($stream, 0);
        }

        return new self($stream, $file, $resume);
    }

    public function prepare(RowReader $rows, RowRenderer $renderer): Done
    {
        $done = new Done();
        if (!$this->resume) {
            return $done;
        }
        [$end, $last] = [0, ''];
        while (($line = fgets($this->stream)) !== false && str_ends_with($line, "\n")) {
            ++$done->rows;
            $done->faults += (int) ($line[0] === '{');
            $end += strlen($line);
            $last = $line;
        }
        if ($done->rows > 0 && (!$rows->skip($done->rows - 1) || $this->again($rows, $renderer) !== $last)) {
            throw new UsageError("$this->name was not made from these rows with this template; --force starts anew.");
        }
        ftruncate($this->stream, $end);
        fseek($this->stream, $end);

        return $done;
    }

    public function pack(Row $row): Packed
    {
        [$line, $fault] = self::line($row);

        return new Packed($row->line, $line, $fault, $row->notices);
    }

    public function put(Packed $row): ?string
    {
        $this->buffer .= $row->bytes;
        if (strlen($this->buffer) >= self::BUFFER) {
            $this->flush();
        }

        return $row->fault;
    }

    public function flush(): void
    {
        for ($at = 0; $at < strlen($this->buffer); $at += (int) $written) {
            error_clear_last();
            $written = @fwrite($this->stream, substr($this->buffer, $at));
            $error = error_get_last();
            if ($error !== null) {
                throw new Failure("Could not write $this->name: {$error['message']}");
            }
            // Nothing written and no error: a signal came, or a reader of our non-blocking pipe is slow.
            if (!$written) {
                [$none, $stream] = [null, [$this->stream]];
                @stream_select($none, $stream, $none, 1);
            }
        }
        $this->buffer = '';
    }

    public function complete(): void
    {
        $this->flush();
    }

    /** The line that the next row gives now. */
    private function again(RowReader $rows, RowRenderer $renderer): ?string
    {
        $json = $rows->next();

        return $json === null ? null : self::line($renderer->render($rows->lines, $json))[0];
    }

    /** @return array{string, ?string} the line, and the fault if there is one */
    private static function line(Row $row): array
    {
        $fault = $row->fault;
        if ($fault === null) {
            try {
                return [Json::line($row->result) . "\n", null];
            } catch (\JsonException $exception) {
                $fault = "The result cannot be written as JSON: {$exception->getMessage()}";
            }
        }

        // The line's number is not in it, so that parts of the input that are rendered apart give the same lines.
        return [Json::line(['error' => $fault], JSON_INVALID_UTF8_SUBSTITUTE) . "\n", $fault];
    }
}

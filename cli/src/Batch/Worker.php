<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\Failure;

/** A process that renders blocks of rows. It takes one block at a time, so that neither side waits for the other to read. */
final class Worker
{
    private const string LENGTH = 'J';
    private const int LENGTH_BYTES = 8;

    /** The number of the block that it is at. */
    public ?int $block = null;

    /** @param resource $socket */
    private function __construct(public readonly mixed $socket, private readonly int $process)
    {
    }

    /** @param \Closure(int, string): Packed $work renders the row of a line */
    public static function start(\Closure $work): self
    {
        $sockets = stream_socket_pair(STREAM_PF_UNIX, STREAM_SOCK_STREAM, 0);
        $process = $sockets === false ? -1 : pcntl_fork();
        if ($process === -1) {
            throw new Failure('Could not start a process');
        }
        if ($process === 0) {
            fclose($sockets[0]);
            self::serve($sockets[1], $work);
        }
        fclose($sockets[1]);

        return new self($sockets[0], $process);
    }

    public function send(int $number, Block $block): void
    {
        $this->block = $number;
        self::write($this->socket, [$block->firstLine, $block->rows]);
    }

    /** @return list<Packed> */
    public function receive(): array
    {
        $this->block = null;

        return self::read($this->socket) ?? throw new Failure('A process that renders has ended: out of memory, or killed');
    }

    public function stop(): void
    {
        fclose($this->socket);
        // What it is at is of no use to anybody.
        posix_kill($this->process, SIGKILL);
        while (pcntl_waitpid($this->process, $status) === -1 && pcntl_get_last_error() === PCNTL_EINTR);
    }

    /**
     * @param resource $socket
     * @param \Closure(int, string): Packed $work
     */
    private static function serve(mixed $socket, \Closure $work): never
    {
        // Ctrl-C goes to all processes of a terminal; ours end when the first one does.
        array_map(static fn (int $signal): bool => pcntl_signal($signal, SIG_IGN), [SIGINT, SIGHUP, SIGTERM]);
        while (($block = self::read($socket)) !== null) {
            [$line, $rows] = $block;
            $done = [];
            foreach ($rows as $row) {
                $done[] = $work($line++, $row);
            }
            self::write($socket, $done);
        }
        exit(0);
    }

    /** @param resource $socket */
    private static function write(mixed $socket, mixed $message): void
    {
        $bytes = serialize($message);
        $bytes = pack(self::LENGTH, strlen($bytes)) . $bytes;
        for ($at = 0; $at < strlen($bytes); $at += (int) $written) {
            $written = @fwrite($socket, substr($bytes, $at, 1 << 20));
            if ($written === false && feof($socket)) {
                throw new Failure('A process that renders has ended: out of memory, or killed');
            }
        }
    }

    /** @param resource $socket */
    private static function read(mixed $socket): mixed
    {
        $length = self::bytes($socket, self::LENGTH_BYTES);
        $bytes = $length === null ? null : self::bytes($socket, unpack(self::LENGTH, $length)[1]);

        return $bytes === null ? null : unserialize($bytes, ['allowed_classes' => [Packed::class]]);
    }

    /**
     * @param resource $socket
     *
     * @return ?string null when the other side is gone
     */
    private static function bytes(mixed $socket, int $length): ?string
    {
        $bytes = '';
        while (strlen($bytes) < $length) {
            $part = @fread($socket, min($length - strlen($bytes), 1 << 20));
            if (($part === false || $part === '') && feof($socket)) {
                return null;
            }
            $bytes .= (string) $part;
        }

        return $bytes;
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

/** Renders blocks of rows in several processes, and gives the rows back in their order. */
final class Workers
{
    /** So many blocks for each process may wait for one before them. */
    private const int MOST_AHEAD = 4;

    /** @var list<Worker> */
    private array $workers = [];
    /** Blocks that were sent, and those of them whose rows were given back. */
    private int $sent = 0;
    private int $returned = 0;
    /** @var array<int, list<Packed>> by number of the block: those that are done, before their turn */
    private array $done = [];

    /** @param \Closure(int, string): Packed $work */
    public function __construct(int $count, \Closure $work)
    {
        while (count($this->workers) < $count) {
            $this->workers[] = Worker::start($work);
        }
    }

    public function canTake(): bool
    {
        return $this->sent - $this->returned < self::MOST_AHEAD * count($this->workers) && $this->idle() !== null;
    }

    public function isBusy(): bool
    {
        return $this->sent > $this->returned;
    }

    public function take(Block $block): void
    {
        $this->idle()->send($this->sent++, $block);
    }

    /**
     * The rows whose turn it is.
     *
     * @param int $seconds to wait for a process, when none is ready
     *
     * @return list<Packed>
     */
    public function give(int $seconds): array
    {
        $working = array_filter($this->workers, static fn (Worker $worker): bool => $worker->block !== null);
        $sockets = array_map(static fn (Worker $worker): mixed => $worker->socket, $working);
        $none = null;
        if ($sockets !== [] && @stream_select($sockets, $none, $none, $seconds) > 0) {
            foreach (array_intersect_key($working, $sockets) as $worker) {
                $block = $worker->block;
                $this->done[$block] = $worker->receive();
            }
        }
        $rows = [];
        while (isset($this->done[$this->returned])) {
            array_push($rows, ...$this->done[$this->returned]);
            unset($this->done[$this->returned++]);
        }

        return $rows;
    }

    public function stop(): void
    {
        array_map(static fn (Worker $worker) => $worker->stop(), $this->workers);
        $this->workers = [];
    }

    private function idle(): ?Worker
    {
        return array_find($this->workers, static fn (Worker $worker): bool => $worker->block === null);
    }
}

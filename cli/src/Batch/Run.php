<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

/** Takes the rows through the template, until there are no more or a signal comes. */
final class Run
{
    public readonly Done $before;
    public private(set) Done $done;
    /** The signal that ended the run early. */
    public private(set) ?int $signal = null;

    private ?Progress $progress = null;

    /** @param \Closure(string): void $complain */
    public function __construct(
        private readonly RowReader $rows,
        private readonly RowRenderer $renderer,
        private readonly Sink $sink,
        private readonly \Closure $complain,
    ) {
        $this->before = $sink->prepare($rows, $renderer);
        $this->done = clone $this->before;
    }

    public function go(?Progress $progress, int $jobs = 1): void
    {
        $this->progress = $progress;
        $work = fn (int $line, string $json): Packed => $this->sink->pack($this->renderer->render($line, $json));
        if ($jobs > 1) {
            $workers = new Workers($jobs, $work);
            $this->listenToSignals();
            try {
                $this->withWorkers($workers);
            } finally {
                $workers->stop();
            }
        } else {
            $this->listenToSignals();
            while ($this->wait() && ($json = $this->rows->next()) !== null) {
                $this->put($work($this->rows->lines, $json));
            }
        }
        $progress?->clear();
        $this->signal === null ? $this->sink->complete() : $this->sink->flush();
    }

    /** What the processes are at when a signal comes is left undone. */
    private function withWorkers(Workers $workers): void
    {
        $isOpen = true;
        while ($this->signal === null && ($isOpen || $workers->isBusy())) {
            $mayRead = $isOpen && $workers->canTake() && ($workers->isBusy() ? $this->rows->isReady() : $this->wait());
            if ($mayRead && $this->signal === null) {
                $block = $this->block();
                $isOpen = $block->rows !== [];
                !$isOpen ?: $workers->take($block);
            }
            // Goes on at once where there is more to send; else waits, for a signal too.
            $mayWait = !$mayRead || !$isOpen || !$workers->canTake();
            array_map($this->put(...), $workers->give($mayWait && $workers->isBusy() ? 1 : 0));
        }
    }

    /** As many rows as there are for now; none at the end. */
    private function block(): Block
    {
        $block = new Block($this->rows->lines + 1);
        do {
            $row = $this->rows->next();
            $row === null ?: $block->add($row);
        } while ($row !== null && !$block->isFull() && $this->rows->isReady());

        return $block;
    }

    private function put(Packed $row): void
    {
        $fault = $this->sink->put($row);
        ++$this->done->rows;
        foreach ($row->notices as $notice) {
            $this->complain("line $row->line: PHP: $notice");
        }
        if ($fault !== null) {
            ++$this->done->faults;
            $this->complain("line $row->line: $fault");
        }
        $this->progress?->advance($this->done, $this->rows->bytes);
    }

    /** False when a signal came. What is done must not lie in memory while a slow input keeps us waiting. */
    private function wait(): bool
    {
        if (!$this->rows->isReady()) {
            $this->sink->flush();
            while ($this->signal === null && !$this->rows->isReady(1));
        }

        return $this->signal === null;
    }

    private function listenToSignals(): void
    {
        if (!function_exists('pcntl_signal')) {
            return;
        }
        pcntl_async_signals(true);
        foreach ([SIGINT, SIGTERM, SIGHUP] as $signal) {
            // The row at hand is finished; a second signal of the kind does not wait for that.
            pcntl_signal($signal, function (int $signal): void {
                $this->signal = $signal;
                pcntl_signal($signal, SIG_DFL);
            }, restart_syscalls: false);
        }
    }

    private function complain(string $message): void
    {
        $this->progress?->clear();
        ($this->complain)($message);
    }
}

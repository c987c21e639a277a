<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

/** Takes the rows through the template, one by one, until there are no more or a signal comes. */
final class Run
{
    public readonly Done $before;
    public private(set) Done $done;
    /** The signal that ended the run early. */
    public private(set) ?int $signal = null;

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

    public function go(?Progress $progress): void
    {
        $this->listenToSignals();
        while ($this->wait() && ($json = $this->rows->next()) !== null) {
            $row = $this->renderer->render($this->rows->lines, $json);
            $fault = $this->sink->put($row);
            ++$this->done->rows;
            foreach ($row->notices as $notice) {
                $this->complain("line $row->line: PHP: $notice", $progress);
            }
            if ($fault !== null) {
                ++$this->done->faults;
                $this->complain("line $row->line: $fault", $progress);
            }
            $progress?->advance($this->done, $this->rows->bytes);
        }
        $progress?->clear();
        $this->signal === null ? $this->sink->complete() : $this->sink->flush();
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

    private function complain(string $message, ?Progress $progress): void
    {
        $progress?->clear();
        ($this->complain)($message);
    }
}

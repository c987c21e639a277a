<?php
declare(strict_types=1);

/** Tells on standard error how far the work is: in one line on a terminal, a line for each task elsewhere. */
final class Progress
{
    private readonly bool $redraws;
    private string $task = '';
    private int $steps = 0;
    private int $done = 0;
    private float $drawn = 0.0;

    public function __construct()
    {
        $this->redraws = stream_isatty(STDERR);
    }

    public function start(string $task, int $steps): void
    {
        [$this->task, $this->steps, $this->done] = [$task, $steps, 0];
        fwrite(STDERR, $this->redraws ? "\r\e[K$task" : "$task\n");
    }

    public function step(string $name): void
    {
        $this->done++;
        $last = $this->done === $this->steps;
        if ($this->redraws && ($last || microtime(true) - $this->drawn > 0.05)) {
            $this->drawn = microtime(true);
            $name = substr(preg_replace('/[^ -~]/', '', $name), 0, 40);
            fwrite(STDERR, sprintf("\r\e[K%s  %d of %d  %s", $this->task, $this->done, $this->steps, $name));
        }
    }

    /** Leaves the line to what comes next. */
    public function finish(): void
    {
        if ($this->redraws) {
            fwrite(STDERR, "\r\e[K");
        }
    }
}

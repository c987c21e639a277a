<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use Symfony\Component\Console\Helper\Helper;
use Symfony\Component\Console\Helper\ProgressBar;
use Symfony\Component\Console\Output\OutputInterface;

/** Shows on a terminal how far a run is, how fast it goes and when it will be over. */
final class Progress
{
    private const int PAUSE_NANOSECONDS = 100_000_000;

    private readonly ProgressBar $bar;
    private readonly int $start;
    private readonly int $startBytes;
    private int $nextDraw = 0;
    private int $bytes;
    private Done $done;

    public function __construct(OutputInterface $output, private readonly ?int $size, private readonly Done $before, int $bytes)
    {
        $this->done = $before;
        $this->bytes = $this->startBytes = $bytes;
        $this->start = hrtime(true);
        $this->bar = new ProgressBar($output, $size ?? 0, 0.0);
        $this->bar->setFormat(
            ($size === null ? '' : '%percent:3s%% [%bar%] ') . '%rows% rows, %rate% rows/s, '
            . ($size === null ? '%elapsed%' : '%left% left') . ', %faults% faults',
        );
        $this->bar->setPlaceholderFormatter('rows', fn (): string => number_format($this->done->rows));
        $this->bar->setPlaceholderFormatter('faults', fn (): string => number_format($this->done->faults));
        $this->bar->setPlaceholderFormatter('rate', fn (): string => number_format($this->rate()));
        $this->bar->setPlaceholderFormatter('left', fn (): string => $this->left());
        $this->bar->start(startAt: $bytes);
    }

    public function advance(Done $done, int $bytes): void
    {
        [$this->done, $this->bytes] = [$done, $bytes];
        $now = hrtime(true);
        if ($now >= $this->nextDraw) {
            $this->nextDraw = $now + self::PAUSE_NANOSECONDS;
            $this->bar->setProgress($bytes);
        }
    }

    /** Takes the bar away, for a message in its place; the next advance() draws it again. */
    public function clear(): void
    {
        $this->bar->clear();
        $this->nextDraw = 0;
    }

    private function seconds(): float
    {
        return max((hrtime(true) - $this->start) / 1e9, 1e-6);
    }

    private function rate(): float
    {
        return ($this->done->rows - $this->before->rows) / $this->seconds();
    }

    private function left(): string
    {
        $bytesPerSecond = ($this->bytes - $this->startBytes) / $this->seconds();

        return $bytesPerSecond > 0 ? Helper::formatTime((int) (($this->size - $this->bytes) / $bytesPerSecond)) : '?';
    }
}

<?php

declare(strict_types=1);

namespace Mailing;

use Symfony\Component\Console\Helper\ProgressBar;
use Symfony\Component\Console\Output\OutputInterface;

/** How far the mailing is: a line that changes on a terminal, and one every two seconds elsewhere. */
final readonly class Progress
{
    private ProgressBar $bar;
    private float $start;

    /** @param array<string, int> $first how many mails are in each state */
    public function __construct(OutputInterface $output, private array $first)
    {
        $this->bar = new ProgressBar($output, self::done($first) + self::left($first), $output->isDecorated() ? 0.1 : 2);
        $this->bar->setFormat(' %percent:3s%% %bar% %message%');
        $this->start = microtime(true);
    }

    public function show(array $count, ?string $trouble = null): void
    {
        $rate = (self::done($count) - self::done($this->first)) / max(0.1, microtime(true) - $this->start);
        $line = sprintf('%d sent, %d failed, %d to go, %.0f a second', $count['sent'], $count['failed'], self::left($count), $rate);
        $this->bar->setMessage($line . ($trouble === null ? '' : "; held up: $trouble"));
        self::left($count) > 0 ? $this->bar->setProgress(self::done($count)) : $this->bar->finish();
    }

    public static function left(array $count): int
    {
        return $count['waiting'] + $count['sending'];
    }

    private static function done(array $count): int
    {
        return $count['sent'] + $count['failed'];
    }
}

<?php

declare(strict_types=1);

/** The progress bar and Ctrl-C in a real terminal, which tmux plays. */
final class TerminalTest extends CliTestCase
{
    /** Some seconds of work on a fast machine. */
    private const int ROWS = 400_000;

    protected function setUp(): void
    {
        parent::setUp();
        $this->files(['t' => '{id}', 'rows' => str_repeat("{\"id\": 1}\n", self::ROWS)]);
        $this->tmux('new-session -d -x 90 -y 10 sh');
        $this->type("PATH=$this->folder/bin:\$PATH PS1='$ '; clear");
    }

    protected function tearDown(): void
    {
        $this->tmux('kill-server');
        parent::tearDown();
    }

    public function testBarAndInterruption(): void
    {
        $this->type('template batch t rows -o out; echo "status $?"');
        $bar = '/ \d+% \[[=>-]+\] [\d,]+ rows, [\d,]+ rows\/s, (< |\d+ min, )?\d+ secs? left, 0 faults/';
        $this->waitUntil(fn (): bool => preg_match($bar, $this->screen()) === 1, 'a bar');
        self::assertSame(1, preg_match_all('/ rows\/s/', $this->screen()), 'the bar is drawn in one place');
        $this->tmux('send-keys C-c');
        $this->waitUntil(fn (): bool => str_contains($this->screen(), 'status 130'), 'the end');
        $screen = str_replace("\n", '', $this->screen()); // where a line ends, so does a blank that was there
        self::assertMatchesRegularExpression('/Interrupted after line (\d+)\. .*; ?the same command with --resume goes on\./', $screen);
        self::assertStringNotContainsString('[=', $screen, 'the bar is gone');
        preg_match('/after line (\d+)/', $screen, $line);
        self::assertSame((int) $line[1], substr_count(file_get_contents('out'), "\n"));

        $this->type('clear; template batch t rows -o out --resume; echo "status $?"');
        $this->waitUntil(fn (): bool => str_contains($this->screen(), 'status 0'), 'the end of the resumed run');
        self::assertSame(self::ROWS, substr_count(file_get_contents('out'), "\n"));
    }

    public function testAPipeHasNoShareButARate(): void
    {
        $this->type('(cat rows; echo bad; cat rows) | template batch t > out; echo "status $?"');
        $this->waitUntil(fn (): bool => preg_match('/^ *[\d,]+ rows, [\d,]+ rows\/s, (< )?\d+ secs?, \d faults$/m', $this->screen()) === 1, 'a rate');
        $this->waitUntil(fn (): bool => str_contains($this->screen(), 'status 1'), 'the end');
        self::assertStringContainsString('line ' . (self::ROWS + 1) . ': The line is not a JSON object or list: Syntax error', $this->screen());
    }

    private function tmux(string $command): string
    {
        $socket = escapeshellarg("$this->folder/tmux");

        return (string) shell_exec("LC_ALL=C.UTF-8 tmux -S $socket -f /dev/null $command 2>&1");
    }

    private function type(string $line): void
    {
        $this->tmux('send-keys -l ' . escapeshellarg($line));
        $this->tmux('send-keys Enter');
    }

    private function screen(): string
    {
        return $this->tmux('capture-pane -p');
    }
}

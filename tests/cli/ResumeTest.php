<?php

declare(strict_types=1);

use Random\Engine\Mt19937;
use Random\Randomizer;

/** An interrupted batch goes on without losing or repeating a row, wherever it was stopped. */
final class ResumeTest extends CliTestCase
{
    private const int ROWS = 6_010;

    protected function setUp(): void
    {
        parent::setUp();
        $rows = '';
        for ($id = 1; $id <= self::ROWS; ++$id) {
            $rows .= $id % 500 === 0 ? "broken\n" : json_encode(['id' => $id, 'text' => str_repeat('é', $id % 40)]) . "\n";
        }
        $this->files(['t' => "{id} {text}\n", 'rows' => $rows]);
    }

    public function testAnOutputFileThatWasCutAnywhereIsCompleted(): void
    {
        $this->template('batch', 't', 'rows', '-o', 'whole');
        $whole = file_get_contents('whole');
        self::assertSame(self::ROWS, substr_count($whole, "\n"));
        $random = new Randomizer(new Mt19937(6));
        $cuts = [0, 1, strpos($whole, "\n"), strpos($whole, "\n") + 1, strlen($whole) - 1, strlen($whole)];
        while (count($cuts) < 16) {
            $cuts[] = $random->getInt(0, strlen($whole));
        }
        foreach ($cuts as $cut) {
            file_put_contents('part', substr($whole, 0, $cut));
            [$status, , $errors] = $this->template('batch', 't', 'rows', '-o', 'part', '--resume');
            self::assertSame(1, $status, 'the faults of the first run count');
            self::assertSame($whole, file_get_contents('part'), "cut at $cut");
            $done = substr_count(substr($whole, 0, $cut), "\n");
            self::assertStringContainsString(number_format(self::ROWS - $done) . ' rows, ', $errors);
        }
    }

    public function testRefusesToGoOnWithSomethingElse(): void
    {
        $this->template('batch', 't', 'rows', '-o', 'part');
        $before = file_get_contents('part');
        file_put_contents('other', 'other {id}');
        $rows = explode("\n", file_get_contents('rows'));
        file_put_contents('fewer', implode("\n", array_slice($rows, 0, 100)) . "\n");
        foreach ([['other', 'rows'], ['t', 'fewer']] as $arguments) {
            [$status, , $errors] = $this->template('batch', ...$arguments, ...['-o', 'part', '--resume']);
            self::assertSame(2, $status);
            self::assertStringContainsString('was not made from these rows with this template', $errors);
        }
        self::assertSame($before, file_get_contents('part'));
    }

    /** SIGKILL at random moments, until a run comes to its end. */
    public function testAKilledRunIsCompleted(): void
    {
        $this->template('batch', 't', 'rows', '-o', 'whole');
        $this->killUntilDone('part');
        self::assertFileEquals('whole', 'part');

        $this->killUntilDone('pages/{#}.txt');
        $names = array_values(array_diff(scandir('pages'), ['.', '..']));
        self::assertCount(self::ROWS - intdiv(self::ROWS, 500), $names, 'one file for each row, nothing half-made, no journal');
        $lines = file('whole', FILE_IGNORE_NEW_LINES);
        foreach ($names as $name) {
            self::assertSame(json_decode($lines[(int) $name - 1]), file_get_contents("pages/$name"));
        }
    }

    private function killUntilDone(string $output): void
    {
        $random = new Randomizer(new Mt19937(7));
        $kills = 0;
        do {
            $process = $this->start([...self::command(), 'batch', 't', 'rows', '-o', $output, '--resume'], '');
            // Startup takes some 50 ms: the first run is killed in it, however fast the machine. More patience each
            // time after that, or a slow machine never comes to an end.
            usleep(($kills === 0 ? 10 : $random->getInt(40, 160) + $kills * 10) * 1_000);
            $killed = proc_get_status($process)['running'];
            $killed ? proc_terminate($process, SIGKILL) : null;
            $kills += (int) $killed;
            $status = proc_get_status($process);
            [$exit, , $errors] = $this->finish($process);
        } while ($killed);
        self::assertGreaterThan(0, $kills);
        self::assertSame(1, $status['running'] ? $exit : $status['exitcode'], $errors);
        // A run that was killed before it wrote a row leaves all of them to the last one, which then says so.
        self::assertMatchesRegularExpression('/\b12 (of them with )?faults\b/', $errors);
    }

    public function testASignalEndsTheRunAfterARow(): void
    {
        $process = $this->startWithPipe(['batch', 't', '-o', 'part'], $pipe);
        fwrite($pipe, "{\"id\": 1}\n{\"id\": 2}\n");
        $this->waitUntil(static fn (): bool => @file_get_contents('part') === "\"1 {text}\\n\"\n\"2 {text}\\n\"\n", 'output of both rows');
        proc_terminate($process, SIGINT);
        self::assertSame(128 + SIGINT, proc_close($process), 'also while it waits for input');
        self::assertStringContainsString('Interrupted after line 2. ', $this->errors());
    }

    public function testASignalWhileTheReaderIsSlowCutsNoLine(): void
    {
        $process = proc_open([...self::command(), 'batch', 't', 'rows'], [1 => ['pipe', 'w'], ['file', "$this->folder/err", 'w']], $pipes);
        // Once its output fills the pipe, the process waits in a write. The first signal cuts that one short, the
        // second the next one, before a byte of it is written.
        $read = fread($pipes[1], 10);
        usleep(300_000);
        foreach ([SIGINT, SIGTERM] as $signal) {
            proc_terminate($process, $signal);
            usleep(200_000);
        }
        $read .= stream_get_contents($pipes[1]);
        self::assertSame(128 + SIGTERM, proc_close($process), $this->errors());
        $lines = explode("\n", $read);
        self::assertSame('', array_pop($lines));
        self::assertStringContainsString('Interrupted after line ' . count($lines) . '. ', $this->errors());
        array_map(static fn (string $line): mixed => json_decode($line, flags: JSON_THROW_ON_ERROR), $lines);
    }

    public function testTwoRunsDoNotWriteOneFile(): void
    {
        $process = $this->startWithPipe(['batch', 't', '-o', 'part'], $pipe);
        $this->waitUntil(static fn (): bool => is_file('part'), 'the first run');
        self::assertSame([2, '', "template: Another run is writing part.\n"], $this->template('batch', 't', 'rows', '-o', 'part'));
        fclose($pipe);
        proc_close($process);
    }
}

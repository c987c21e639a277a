<?php

declare(strict_types=1);

/** Rows rendered in parts, and results held against the manifest. */
final class PartTest extends CliTestCase
{
    private const array ROWS = ['{"id":1}', '{"id":22,"x":"long"}', '', '{"id":4}', '{"id":5}'];

    protected function setUp(): void
    {
        parent::setUp();
        $this->files(['t' => "{id}\n", 'rows' => implode("\n", self::ROWS)]);
        $this->template('batch', 't', 'rows', '-o', 'whole');
    }

    public function testThePartsTogetherAreTheWhole(): void
    {
        foreach ([1, 2, 3, 5, 40] as $count) {
            $results = '';
            for ($part = 1; $part <= $count; ++$part) {
                $results .= $this->template('batch', 't', 'rows', '--part', "$part/$count")[1];
            }
            self::assertStringEqualsFile('whole', $results, "$count parts");
        }
        self::assertStringContainsString('part 2/2, line 1: The line is not', $this->template('batch', 't', 'rows', '--part', '2/2', '-q')[2]);
    }

    public function testWhatIsWrongWithResultsIsTold(): void
    {
        foreach ([1, 2, 3] as $part) {
            $this->render($part);
        }
        $all = [1, 2, 3];
        self::assertSame([0, "All as the manifest says: 5 rows, 1 of them with faults.\n"], $this->verify($all, $all));
        self::assertSame(0, $this->verify([3, 1, 2, 2], $all)[0]);
        self::assertSame([1, "part 2/3 is missing from the manifest\npart 3/3 is not in the results as it was written; what follows was not compared\n"], $this->verify([1, 3], $all));
        self::assertSame([1, "part 2/3 is not in the results as it was written; what follows was not compared\n"], $this->verify($all, [1, 3, 2]));
        self::assertSame([1, "part 3/3 is not in the results as it was written; what follows was not compared\n"], $this->verify($all, [1, 2]));
        self::assertSame([1, "the results go on after the last part\n"], $this->verify($all, [1, 2, 3, 3]));
        $this->files(['rows' => str_replace('4', '7', implode("\n", self::ROWS))]);
        self::assertSame([1, "part 2/3 was rendered from other rows\n"], $this->verify($all, $all));
        $this->files(['t' => "{id}!\n", 'rows' => implode("\n", self::ROWS)]);
        $this->render(1, '--force');
        self::assertSame([1, "part 2/3 was rendered with another template\npart 3/3 was rendered with another template\n"], $this->verify($all, $all));
    }

    public function testARunThatIsInterruptedLeavesNoManifest(): void
    {
        $this->files(['rows' => str_repeat("{\"id\": 1}\n", 60_000), 'm' => 'of an earlier run']);
        $run = ['batch', 't', 'rows', '-o', 'o', '--manifest', 'm'];
        $process = $this->start([...self::command(), ...$run], '');
        $this->waitUntil(fn () => is_file('o') && filesize('o') > 0, 'The first result');
        proc_terminate($process, SIGINT);
        self::assertSame(128 + SIGINT, $this->finish($process)[0]);
        self::assertFileDoesNotExist('m');
        self::assertSame([0, 0], [$this->template(...$run, ...['--resume'])[0], $this->template(...$run, ...['--verify'])[0]]);
    }

    public function testWrongUseIsToldInASentence(): void
    {
        foreach ([
            'not "4/3"' => ['rows', '--part', '4/3'],
            '{#} counts from the beginning of a part' => ['rows', '--part', '1/2', '-o', '{#}.txt'],
            '--manifest needs a file' => ['rows', '--manifest', 'm'],
            '--verify needs the --manifest' => ['rows', '--verify', '-o', 'whole'],
            'Could not read the manifest m' => ['rows', '--verify', '-o', 'whole', '--manifest', 'm'],
            't is not a manifest: see its line 1' => ['rows', '--verify', '-o', 'whole', '--manifest', 't'],
        ] as $sentence => $arguments) {
            [$status, , $errors] = $this->template('batch', 't', ...$arguments);
            self::assertSame(2, $status, $sentence);
            self::assertStringContainsString($sentence, $errors);
        }
        self::assertStringContainsString('--part needs a file', $this->shell('cat rows | template batch t --part 1/2')[2]);
    }

    private function render(int $part, string ...$options): void
    {
        $this->template('batch', 't', 'rows', '--part', "$part/3", '-o', "o$part", '--manifest', "m$part", ...$options);
    }

    /**
     * @param list<int> $noted the parts in the manifest
     * @param list<int> $written those in the results
     *
     * @return array{int, string}
     */
    private function verify(array $noted, array $written): array
    {
        $together = fn (string $what, array $parts): string => implode('', array_map(fn (int $part) => file_get_contents("$what$part"), $parts));
        $this->files(['m' => $together('m', $noted), 'o' => $together('o', $written)]);
        [$status, , $errors] = $this->template('batch', 't', 'rows', '-o', 'o', '--manifest', 'm', '--verify');

        return [$status, $errors];
    }
}

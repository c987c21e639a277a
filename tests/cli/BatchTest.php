<?php

declare(strict_types=1);

final class BatchTest extends CliTestCase
{
    protected function setUp(): void
    {
        parent::setUp();
        $this->files(['t' => "{id}:{dynamic l}{*},{/dynamic}{sender}\n"]);
    }

    public function testEveryLineGivesOneLine(): void
    {
        $rows = "{\"id\": 1, \"l\": [\"é/\", \"\u{2028}\"]}\n[]\n\n{\"id\": }\n3\n{\"id\": \"</p>\"}";
        [$status, $output, $errors] = $this->templateWithInput($rows, 'batch', 't', '--set', 'sender=S');
        self::assertSame(1, $status);
        $lines = explode("\n", $output);
        self::assertCount(7, $lines);
        self::assertSame('"1:é/,\u2028,S\n"', $lines[0]);
        self::assertSame('"{id}:S\n"', $lines[1]);
        foreach ([2, 3, 4] as $line) {
            self::assertSame(['error'], array_keys(json_decode($lines[$line], true)));
            self::assertStringContainsString('line ' . ($line + 1) . ': The line is not a JSON object or list: ', $errors);
        }
        self::assertSame(['"</p>:S\n"', ''], array_slice($lines, 5));
        self::assertMatchesRegularExpression('/^6 rows, 3 of them with faults, in [0-9.]+ s \([0-9,]+ rows\/s\)\.$/m', $errors);
        self::assertSame(0, $this->templateWithInput($rows, 'batch', 't', '--allow-faults')[0]);
    }

    public function testARowsFaultsAreItsOwn(): void
    {
        $this->files(['t' => '{include part}{b}', 'part' => 'x', 'bad' => '{/optional}']);
        $rows = "{\"b\": 1}\n{\"part\": \"bad\"}\n{\"b\": [1]}\n{\"part\": \"t\"}\n{\"b\": 2}\n";
        [$status, $output, $errors] = $this->templateWithInput($rows, 'batch', 't', '-q');
        self::assertSame(1, $status);
        self::assertSame(
            "\"x1\"\n{\"error\":\"Unexpected closing optional tag in bad\"}\n\"xArray\"\n"
            . "{\"error\":\"Include block bad parameter 'part': circle is detected in t\"}\n\"x2\"\n",
            $output,
        );
        self::assertSame(
            "line 2: Unexpected closing optional tag in bad\nline 3: PHP: Array to string conversion\n"
            . "line 4: Include block bad parameter 'part': circle is detected in t\n",
            $errors,
        );
    }

    public function testAResultThatIsNotUtf8IsAFaultOnALineAndNoneInAFile(): void
    {
        $this->files(['t' => "\xFF{id}"]);
        [$status, $output] = $this->templateWithInput('{"id": 1}', 'batch', 't');
        self::assertSame([1, true], [$status, str_starts_with($output, '{"error":"The result cannot be written as JSON: ')]);
        self::assertSame(0, $this->templateWithInput('{"id": 1}', 'batch', 't', '-o', '{id}.out')[0]);
        self::assertSame("\xFF1", file_get_contents('1.out'));
    }

    public function testSharedDataYieldsToTheRows(): void
    {
        $this->files(['t' => '{a}{b}{c}', 'd.json' => '{"a": 1, "b": 1, "c": 1}']);
        self::assertSame("\"123\"\n", $this->templateWithInput('{"c": 3}', 'batch', 't', '--data', 'd.json', '-s', 'b=2')[1]);
    }

    public function testAFileForEachRow(): void
    {
        $rows = "{\"id\": \"a/b\"}\n{\"id\": \"../x\"}\n{}\n{\"id\": \"\"}\n{\"id\": \"a/b\"}\n{\"id\": \".\"}\n{\"id\": \"/etc/x\"}\n{\"id\": \"c\"}\n";
        [$status, $output, $errors] = $this->templateWithInput($rows, 'batch', 't', '-q', '-o', 'out/{id}');
        self::assertSame([1, ''], [$status, $output]);
        self::assertSame("a/b:\n", str_replace('{sender}', '', file_get_contents('out/a/b')));
        self::assertSame(
            ['line 2: The pattern gives no file name that is safe to use: out/../x',
                'line 3: The pattern names data that the row does not have: out/{id}',
                'line 4: The pattern gives no file name that is safe to use: out/',
                'line 5: out/a/b is there already, from another row or an earlier run',
                'line 6: The pattern gives no file name that is safe to use: out/.',
                'line 7: The pattern gives no file name that is safe to use: out//etc/x'],
            explode("\n", trim($errors)),
        );
        self::assertSame(['.', '..', 'a', 'c'], scandir('out'), 'no journal and no half-made file is left');
        self::assertSame(1, $this->templateWithInput('{"id": "c"}', 'batch', 't', '-o', 'out/{id}')[0]);
        self::assertSame(0, $this->templateWithInput('{"id": "c", "sender": "new"}', 'batch', 't', '-o', 'out/{id}', '--force')[0]);
        self::assertSame("c:new\n", file_get_contents('out/c'));
        $this->templateWithInput("{}\n{}\n", 'batch', 't', '-o', 'n/{#}.txt');
        self::assertSame(['1.txt', '2.txt'], array_values(array_diff(scandir('n'), ['.', '..'])));
    }

    public function testResultsAreNotHeldBackFromAPipe(): void
    {
        $process = proc_open([...self::command(), 'batch', '-q', 't'], [['pipe', 'r'], ['pipe', 'w'], STDERR], $pipes);
        stream_set_timeout($pipes[1], 10);
        foreach ([1, 2] as $id) {
            fwrite($pipes[0], "{\"id\": $id}\n");
            self::assertSame("\"$id:{sender}\\n\"\n", fgets($pipes[1]));
        }
        fclose($pipes[0]);
        self::assertSame(0, proc_close($process));
    }

    public function testAReaderThatGoesAwayEndsTheRun(): void
    {
        $this->files(['rows' => str_repeat("{\"id\": 1}\n", 100_000)]);
        [, $output] = $this->shell('{ template batch t rows; echo $? > status; } | head -n 2');
        self::assertSame(str_repeat("\"1:{sender}\\n\"\n", 2), $output);
        self::assertSame("1\n", file_get_contents('status'));
        self::assertStringContainsString('Could not write standard output', $this->errors());
    }

    public function testMemoryDoesNotGrowWithTheRows(): void
    {
        if (getenv('TEST_ASAN')) {
            self::markTestSkipped('The sanitizer keeps what was freed.');
        }
        $kilobytes = static fn (string $status): int => preg_match('/^VmHWM:\s*(\d+) kB/m', $status, $match) ? (int) $match[1] : 0;
        $process = $this->startWithPipe(['batch', 't', '-o', 'out'], $pipe);
        $peaks = [];
        foreach ([1_000, 200_000] as $rows) {
            fwrite($pipe, str_repeat("{\"id\": 1}\n", $rows));
            $this->waitUntil(static fn (): bool => substr_count((string) @file_get_contents('out'), "\n") >= $rows, "$rows rows");
            $peaks[] = $kilobytes(file_get_contents('/proc/' . proc_get_status($process)['pid'] . '/status'));
        }
        fclose($pipe);
        self::assertSame(0, proc_close($process));
        self::assertGreaterThan(0, $peaks[0]);
        self::assertLessThan($peaks[0] + 1_000, $peaks[1]);
    }

    public function testWrongUse(): void
    {
        $this->files(['rows' => "{}\n", 'full' => "x\n"]);
        foreach ([
            ['none'],
            ['rows', '--resume'],
            ['rows', '--resume', '--force', '-o', 'x'],
            ['rows', '-o', 'full'],
            ['rows', '-o', ''],
            ['rows', '--jobs', '0'],
            ['rows', '-o', 'folder/'],
            ['rows', '-o', '{a}/'],
        ] as $arguments) {
            self::assertSame([2, ''], array_slice($this->template('batch', 't', ...$arguments), 0, 2), implode(' ', $arguments));
        }
        self::assertSame("x\n", file_get_contents('full'));
        self::assertSame([1, '', "template: Could not open file none\n"], $this->template('batch', 'none', 'rows'));
    }

    public function testParallelWorkersGiveWhatOneGives(): void
    {
        $rows = '';
        $broken = intdiv(20, self::slowness());
        for ($id = 1; $id <= $broken * 1_000; ++$id) {
            $rows .= $id % 1_000 === 0 ? "broken $id\n" : "{\"id\": $id, \"l\": [" . implode(',', range(0, $id % 7)) . "]}\n";
        }
        $this->files(['rows' => $rows]);
        $this->shell('template batch t rows > one 2> /dev/null');
        [, , $errors] = $this->shell('parallel --will-cite --pipe --keep-order -j2 --block 40k template batch -q --allow-faults t < rows > many');
        self::assertSame($broken, preg_match_all('/^line \d+: /m', $errors), $errors);
        self::assertSame($broken * 1_000, substr_count(file_get_contents('one'), "\n"));
        self::assertFileEquals('one', 'many');
    }

    public function testJobsGiveTheSameBytesInTheSameOrder(): void
    {
        $rows = '';
        for ($id = 1; $id <= 3_000; ++$id) {
            $rows .= $id % 100 === 0 ? "broken\n" : "{\"id\": $id, \"l\": [" . implode(',', range(0, $id % 90)) . "]}\n";
        }
        $this->files(['rows' => $rows]);
        $told = static fn (array $run): array => [$run[0], $run[1], preg_replace('/, in .*/', '', $run[2])];
        $one = $this->template('batch', 't', 'rows');
        self::assertSame($told($one), $told($this->template('batch', 't', 'rows', '--jobs', '3')));
        $this->template('batch', '-q', 't', 'rows', '-o', 'one/{#}');
        $this->template('batch', '-q', 't', 'rows', '-o', 'many/{#}', '-j', '3');
        self::assertSame([0, '', ''], $this->shell('diff -r one many'));
        file_put_contents('part', substr($one[1], 0, intdiv(strlen($one[1]), 2)));
        $this->template('batch', '-q', 't', 'rows', '-o', 'part', '-j', '3', '--resume');
        self::assertSame($one[1], file_get_contents('part'));
        self::assertSame("\"1:{sender}\\n\"\n", $this->templateWithInput('{"id": 1}', 'batch', '-q', '-j', '2', 't')[1], 'a pipe');
    }

    public function testANameThatTheFileSystemRefusesIsTheRowsFault(): void
    {
        $long = str_repeat('x', 300);
        $rows = "{\"id\": \"a\"}\n{\"id\": \"a/b\"}\n{\"id\": \"$long\"}\n{\"id\": \"z\"}\n";
        foreach ([[], ['--force']] as $options) {
            [$status, , $errors] = $this->templateWithInput($rows, 'batch', '-q', 't', '-o', 'out/{id}', ...$options);
            self::assertSame(1, $status);
            self::assertMatchesRegularExpression('~^line 2: Could not make the folder out/a: .*\nline 3: Could not write out/x+: File name too long\n$~', $errors);
            self::assertSame(['a', 'z'], array_values(array_diff(scandir('out'), ['.', '..'])));
        }
    }

    public function testATemplateThatAlwaysFailsStopsBeforeTheFirstRow(): void
    {
        $this->files(['bad' => "x\n{a:::}", 'inc' => '{include ./bad}', 'by-data' => '{include bad}', 'late' => '{a b:::}']);
        $message = "bad:2:1: Bad formated parameter'a:::': too many :: the template fails whatever the data";
        self::assertSame([1, '', "template: $message\n"], $this->templateWithInput("{}\n", 'batch', 'bad'));
        self::assertSame([1, '', "template: ./$message\n"], $this->templateWithInput("{}\n", 'batch', 'inc'));
        self::assertSame("\"{b}:{sender}\\n\"\n", str_replace('{id}', '{b}', $this->templateWithInput('{"bad": "t"}', 'batch', 'by-data')[1]));
        self::assertSame("\"1\"\n", $this->templateWithInput('{"a": 1}', 'batch', 'late')[1]);
    }

    public function testAClosedOrFullStreamIsNotTakenForAnEmptyOne(): void
    {
        $this->files(['rows' => "{}\n"]);
        foreach (['batch t', 'lint -', 'render t -', 'escape'] as $command) {
            self::assertSame([2, '', "template: Standard input is closed.\n"], $this->shell("template $command <&-"), $command);
        }
        foreach (['batch t rows', 'lint t --strict -f json', 'render t', 'data t', 'escape rows'] as $command) {
            foreach (['>&-', '> /dev/full'] as $output) {
                [$status, , $errors] = $this->shell("template $command $output");
                self::assertSame(1, $status, "$command $output");
                self::assertStringStartsWith('template: Could not write standard output: ', $errors);
            }
        }
    }

    public function testTheExampleOfAMillionRowsWithFewer(): void
    {
        $script = escapeshellarg(dirname(__DIR__, 2) . '/examples/batch/spread.sh');
        [$status, $output, $errors] = $this->shell('PHP=' . escapeshellarg(PHP_BINARY) . " $script 3000 2");
        self::assertSame([0, ''], [$status, $errors]);
        self::assertMatchesRegularExpression('/^2 processes: 3000 rows .*\nThe same 3000 lines, \d+ bytes\.$/m', $output);
    }
}

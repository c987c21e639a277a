<?php

declare(strict_types=1);

final class RenderTest extends CliTestCase
{
    public function testDataFromFileInputAndOptions(): void
    {
        $this->files([
            't' => "{a}|{o::b}|{dynamic l}{*},{/dynamic}|{big}|{o::c::d 'none'}",
            'd.json' => '{"a": 1.5, "o": {"b": true}, "l": ["x", null, "y"], "big": 12345678901234567890}',
        ]);
        $expected = '1.5|1|x,,y,|12345678901234567890|none';
        self::assertSame([0, $expected, ''], $this->template('render', 't', 'd.json'));
        self::assertSame([0, $expected, ''], $this->templateWithInput(file_get_contents('d.json'), 'render', 't', '-'));
        self::assertSame(
            [0, 'A=B|1|1,|12345678901234567890|E', ''],
            $this->template('render', 't', 'd.json', '-s', 'a=A=B', '--set', 'o::c::d=E', '--set-json', 'l=[1]'),
        );
    }

    public function testNothingButTheResultIsOnStandardOutput(): void
    {
        self::assertSame([0, '', ''], $this->template('render', '--string', ''));
        self::assertSame([0, "<info>no markup\0</info>\n", ''], $this->runText("<info>no markup\0</info>\n"));
        self::assertSame([0, 'x', ''], $this->template('render', '--quiet', '--string', 'x'));
        self::assertSame([0, 'Array', "PHP: Array to string conversion\n"], $this->template('render', '--string', '{a}', '--set-json', 'a=[]'));
    }

    public function testAFailureIsOnStandardErrorWithStatus1(): void
    {
        $this->files(['t' => "x\n{/dynamic}", 'old' => 'old']);
        self::assertSame([1, '', "Unexpected closing dynamic tag in t\n"], $this->template('render', 't', '-o', 'old'));
        self::assertSame('old', file_get_contents('old'));
        self::assertSame([1, '', "Could not open file none\n"], $this->template('render', 'none', '-q'));
        self::assertSame([1, ''], array_slice($this->template('render', '--string', 'x', '-o', 'none/y'), 0, 2));
    }

    public function testOutputReplacesAFileAndKeepsItsPermissions(): void
    {
        $this->files(['real' => 'old']);
        chmod('real', 0o640);
        symlink('real', 'link');
        $before = fileinode('real');
        self::assertSame([0, '', ''], $this->template('render', '--string', 'new', '--output', 'link'));
        clearstatcache();
        self::assertSame(['new', 0o640, true], [file_get_contents('real'), fileperms('real') & 0o777, is_link('link')]);
        self::assertNotSame($before, fileinode('real'), 'a reader who has the old file open keeps it whole');
        self::assertSame([0, 'new', ''], $this->template('render', '--string', 'new', '--output', '/dev/stdout'));
        self::assertSame([], glob('.*.tmp'));
    }

    public function testIncludePath(): void
    {
        $this->files(['a/t' => '[{include part}]', 'b/part' => 'found']);
        self::assertSame([0, '[found]', ''], $this->template('render', '-I', 'a', '-I', 'b', 't'));
    }

    public function testWrongUse(): void
    {
        $this->files(['t' => '', 'bad.json' => '{"a":', 'text.json' => '"a"']);
        foreach ([
            [],
            ['t', 'none.json'],
            ['t', 'bad.json'],
            ['t', 'text.json'],
            ['t', '--set', 'a'],
            ['t', '--set-json', 'a=b'],
            ['--string', 'x', 'a', 'b'],
            ['t', '-', '--watch'],
        ] as $arguments) {
            [$status, $output, $errors] = $this->template('render', ...$arguments);
            self::assertSame([2, ''], [$status, $output], implode(' ', $arguments));
            self::assertStringStartsWith('template: ', $errors);
        }
    }

    public function testWatchRendersAgainWhenAFileChangesComesOrBreaks(): void
    {
        $this->files(['t' => '{a}{include part}{include late}', 'part' => '1', 'd.json' => '{"a": "A"}']);
        $process = $this->start([...self::command(), 'render', 't', 'd.json', '-o', 'out', '--watch'], '');
        $shows = fn (string $text) => $this->waitUntil(static fn (): bool => @file_get_contents('out') === $text, "\"$text\"");
        $shows('A1');
        file_put_contents('part', '2');
        $shows('A2');
        file_put_contents('late', '!');
        $shows('A2!');
        file_put_contents('d.json', '{"a": ');
        $this->waitUntil(fn (): bool => str_contains($this->errors(), 'is not a JSON'), 'a complaint');
        file_put_contents('d.json', '{"a": "B"}');
        $shows('B2!');
        file_put_contents('t', '{/optional}');
        $this->waitUntil(fn (): bool => str_contains($this->errors(), 'Unexpected closing'), 'a warning');
        file_put_contents('t', 'end');
        $shows('end');
        proc_terminate($process);
        proc_close($process);
    }

    /** @return array{int, string, string} */
    private function runText(string $text): array
    {
        file_put_contents('text', $text);

        return $this->template('render', 'text');
    }
}

<?php

declare(strict_types=1);

/** The command "lint": which files, which findings, how they are written, and the exit status. */
final class LintTest extends CliTestCase
{
    public function testAcceptsGoodFiles(): void
    {
        $this->files(['a.tpl' => 'Hi {name}{include b.tpl}', 'b.tpl' => '!']);
        [$status, $output, $errors] = $this->template('lint', '.');
        self::assertSame([0, ''], [$status, $output]);
        self::assertStringContainsString("2 files, 0 faults, 0 hints.\n", $errors);
    }

    public function testTellsPlacesInIncludedFilesOnce(): void
    {
        $this->files(['t/a.tpl' => "{include t/b.tpl}\n{include b.tpl}", 't/b.tpl' => "\n {/dynamic}"]);
        [$status, $output] = $this->template('lint', '-I', 't', 't');
        self::assertSame([1, "t/b.tpl:2:2: Unexpected closing dynamic tag (no section is open here)\n"], [$status, $output]);
    }

    public function testFindsCirclesOnEveryWayIntoThem(): void
    {
        $this->files(['a' => "{include b}", 'b' => "1\n{include a}", 'c' => '{include a}', 'd' => '{include d}']);
        self::assertSame(
            "a:1:1: Include block bad parameter 'b': circle is detected\n"
            . "b:2:1: Include block bad parameter 'a': circle is detected\n"
            . "d:1:1: Include block bad parameter 'd': circle is detected\n",
            $this->template('lint', 'a', 'b', 'c', 'd')[1],
        );
    }

    public function testIncludesThatFanOutAreScannedOnce(): void
    {
        for ($level = 0; $level < 40; ++$level) {
            $next = $level + 1;
            $files["f$level"] = "{include f$next}{include f$next}";
        }
        $this->files([...$files, 'f40' => "{a::}"]);
        [$status, $output, $errors] = $this->template('lint', 'f0');
        self::assertSame([1, "f40:1:1: Bad formated parameter'a::': too many :\n"], [$status, $output]);
        self::assertStringContainsString('Not confirmed by template(), because of what they include: f0.', $errors);
    }

    public function testDoesNotOpenWhatIsNoFile(): void
    {
        posix_mkfifo('pipe', 0o600);
        $this->files(['a.tpl' => '{include pipe}{include php://stdin}{include http://127.0.0.1:9/x}']);
        [$status, $output, $errors] = $this->template('lint', '.');
        self::assertSame([0, ''], [$status, $output]);
        self::assertStringContainsString('Not confirmed by template(), because of what they include: a.tpl.', $errors);
    }

    /** What only the engine knows, such as how deep its stack is, has the place 1:1. */
    public function testReportsWhatOnlyTheEngineFinds(): void
    {
        $this->files(['deep.tpl' => str_repeat('{optional a}', 200_000) . str_repeat('{/optional}', 200_000)]);
        [$status, $output] = $this->template('lint', 'deep.tpl');
        self::assertSame(1, $status);
        self::assertStringStartsWith('deep.tpl:1:1: Template nesting is too deep in deep.tpl', $output);
    }

    public function testSampleDataIsGivenToTheEngine(): void
    {
        $this->files([
            'a.tpl' => '{include page}',
            'b.tpl' => "\n{/optional}",
            'data.json' => '{"page": "b.tpl"}',
        ]);
        self::assertSame(0, $this->template('lint', 'a.tpl')[0]);
        self::assertSame(
            [1, "b.tpl:2:1: Unexpected closing optional tag (no section is open here)\n"],
            array_slice($this->template('lint', 'a.tpl', '--data', 'data.json'), 0, 2),
        );
    }

    public function testHintsDoNotCountAndCanBeSwitchedOff(): void
    {
        $this->files(['a.html' => '<p>{a}{body_html}</p>{include none}']);
        [$status, $output] = $this->template('lint', 'a.html', '--allow-raw', '*_html');
        self::assertSame(0, $status);
        self::assertSame(2, substr_count($output, ': hint: '));
        self::assertStringContainsString("a.html:1:4: hint: printed raw inside HTML: a [raw-html]\n", $output);
        self::assertSame(1, $this->template('lint', 'a.html', '--strict')[0]);
        self::assertStringNotContainsString('raw-html', $this->template('lint', 'a.html', '--no-hint', 'raw-html')[1]);
        self::assertSame([0, ''], array_slice($this->template('lint', 'a.html', '--strict', '--no-hints'), 0, 2));
    }

    public function testASectionAroundTheIncludeIsKnown(): void
    {
        $this->files(['list' => '{dynamic r,rows}{include row}{/dynamic}', 'row' => '{include cell}', 'cell' => '{r::*::a}{s::*}{s::*::b}']);
        self::assertSame(
            "cell:1:10: hint: no section named \"s\" is open here for \"s::*\" [unknown-section]\n",
            $this->template('lint', 'list', 'row', 'cell')[1],
        );
        self::assertStringContainsString('"r::*::a"', $this->template('lint', 'cell')[1]);
    }

    public function testFilesInFolders(): void
    {
        $this->files([
            't/one.tpl' => '{a::}',
            't/deep/er/two.tpl' => '{b::}',
            't/.git/three.tpl' => '{c::}',
            't/logo.png' => "\x89PNG\0{d::}",
            't/node_modules/x/four.tpl' => '{e::}',
            't/note.txt' => '{e::}',
        ]);
        symlink('..', 't/deep/up');
        $files = static fn (array $run): string => preg_replace('~:1:1.*~', '', $run[1]);
        $all = $this->template('lint', 't/');
        self::assertSame("t/deep/er/two.tpl\nt/one.tpl\n", $files($all));
        self::assertSame("t/note.txt\nt/one.tpl\n", $files($this->template('lint', '--name', '*.txt', 't', 't/one.tpl')));
        [$status, , $errors] = $this->template('lint', '--name', '*.html', 't');
        self::assertSame([2, "template: There is no file named *.html in t (--name takes others).\n"], [$status, $errors]);
    }

    public function testStandardInput(): void
    {
        $this->files(['p/t.tpl' => '{include p/u.tpl}', 'p/u.tpl' => '{a::}']);
        [$status, $output] = $this->templateWithInput("{include p/u.tpl}\n{/optional}", 'lint', '-', '--stdin-name', 'p/t.tpl');
        self::assertSame(
            [1, "p/t.tpl:2:1: Unexpected closing optional tag (no section is open here)\np/u.tpl:1:1: Bad formated parameter'a::': too many :\n"],
            [$status, $output],
        );
        self::assertStringStartsWith('standard input:1:1: ', $this->templateWithInput('{a::}', 'lint', '/dev/stdin')[1]);
        self::assertSame(0, $this->templateWithInput('fine', 'lint', '-')[0]);
    }

    public function testSwallowedPagesAreFaultsAndTheirMessagesShort(): void
    {
        $this->files(['a.tpl' => "{x \"'{y}" . str_repeat('z', 5_000), 'b.tpl' => '{x']);
        [$status, $output] = $this->template('lint', '--no-hints', 'a.tpl', 'b.tpl');
        self::assertSame([1, 3], [$status, substr_count($output, "\n")]);
        self::assertStringContainsString(' [swallow]', $output);
        self::assertStringContainsString('b.tpl:1:1: this tag has no "}"; it ends with the file [unterminated]', $output);
        self::assertLessThan(1_000, strlen($output));
    }

    public function testEachFileHasTheProjectAroundIt(): void
    {
        $this->files([
            'one/template.json' => '{"allow-raw": ["a"], "include-path": ["parts"]}',
            'one/deep/x.html.tpl' => '<p>{a}{include part.tpl}',
            'one/parts/part.tpl' => '',
            'two/template.json' => '{"off": ["missing-include"]}',
            'two/x.html.tpl' => '<p>{a}{include part.tpl}',
            'bad/template.json' => "{\n\"path\": []}",
            'bad/x.tpl' => '',
        ]);
        self::assertSame("two/x.html.tpl:1:4: hint: printed raw inside HTML: a [raw-html]\n", $this->template('lint', 'one', 'two')[1]);
        self::assertSame(
            [2, '', "template: The project file bad/template.json has an entry \"path\" that means nothing.\n"],
            $this->template('lint', 'bad'),
        );
        self::assertSame(0, $this->template('lint', 'one', '--project', 'two/template.json', '--no-hints')[0]);
    }

    public function testOurOwnExamplesAreClean(): void
    {
        self::assertSame([0, ''], array_slice($this->template('lint', '--strict', dirname(__DIR__, 2) . '/examples'), 0, 2));
    }

    public function testFormatsHoldWhateverATemplateHolds(): void
    {
        $name = 'a&<"%,:.tpl';
        $this->files([$name => "x\n{\"<\n\x01&\xFF%'b}"]);
        $data = json_decode($this->template('lint', '-f', 'json', '.')[1], true, flags: JSON_THROW_ON_ERROR);
        self::assertSame([1, 1], [$data['files'], $data['faults']]);
        $fault = array_find($data['findings'], static fn (array $finding): bool => $finding['severity'] === 'error');
        self::assertSame([$name, 2, 1, 3, 8], array_map(static fn (string $key): mixed => $fault[$key], ['file', 'line', 'column', 'endLine', 'endColumn']));

        $xml = simplexml_load_string($this->template('lint', '-f', 'checkstyle', '.')[1]);
        self::assertSame($name, (string) $xml->file['name']);
        $error = $xml->xpath('//error[@severity="error"]')[0];
        self::assertSame(['2', '1', 'template.fault'], [(string) $error['line'], (string) $error['column'], (string) $error['source']]);

        $lines = $this->template('lint', '-f', 'github', '--no-hints', '.')[1];
        self::assertSame(1, substr_count($lines, "\n"));
        self::assertStringStartsWith('::error file=a&<"%25%2C%3A.tpl,line=2,endLine=3,col=1,title=', $lines);
        self::assertStringContainsString('%25', substr($lines, strpos($lines, 'title=')));
        self::assertStringContainsString('\n\001&', $this->template('lint', '.')[1]);
    }

    public function testWrongUse(): void
    {
        $this->files(['a.tpl' => '']);
        self::assertSame([2, '', "template: There is no file or folder \"nope\".\n"], $this->template('lint', 'nope'));
        self::assertSame(2, $this->template('lint')[0]);
        self::assertSame(2, $this->template('lint', 'a.tpl', '--format', 'html')[0]);
        self::assertSame(2, $this->template('lint', 'a.tpl', '--no-hint', 'rawhtml')[0]);
        self::assertSame(2, $this->template('lint', 'a.tpl', '--what')[0]);
    }

    public function testWorksWithoutTheExtensionAndSaysSo(): void
    {
        $this->files(['a.tpl' => '{a::}']);
        $environment = ['TEMPLATE_CLI_TRIED' => '1'] + getenv();
        $command = self::command(withExtension: false);
        [$status, $output, $errors] = $this->finish($this->start([...$command, 'lint', 'a.tpl'], '', $environment));
        self::assertSame([1, "a.tpl:1:1: Bad formated parameter'a::': too many :\n"], [$status, $output]);
        self::assertStringContainsString('The extension is not loaded', $errors);
        $found = $this->finish($this->start([...$command, 'render', '--string', 'found'], ''));
        self::assertSame([0, 'found', ''], $found, 'TEMPLATE_SO leads to the extension');
        [$status, $output, $errors] = $this->finish($this->start([...$command, 'render', 'a.tpl'], '', $environment));
        self::assertSame([2, ''], [$status, $output]);
        self::assertMatchesRegularExpression('/^template: The PHP extension "template" is not loaded\. .*TEMPLATE_SO/', $errors);
    }
}

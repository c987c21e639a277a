<?php

declare(strict_types=1);

use PHPUnit\Framework\Attributes\DataProvider;
use TemplateCli\Check;

/** Planted mistakes, each with its place in the template and in the data. That all are found is for tests/model to prove. */
final class CheckTest extends CliTestCase
{
    /** @param array<mixed> $data */
    #[DataProvider('mistakes')]
    public function testFinds(string $template, array $data, string ...$findings): void
    {
        $seen = [];
        foreach (new Check('T', $template)->problems($data) as $problem) {
            $note = $problem->note === '' ? '' : " ($problem->note)";
            $seen[] = "{$problem->place->line}:{$problem->place->column} {$problem->rule->value} $problem->path$note";
        }
        self::assertSame($findings, $seen);
    }

    /** @return iterable<string, list<mixed>> */
    public static function mistakes(): iterable
    {
        $rows = ['rows' => [['name' => 'Ann'], ['nmae' => 'Bo']]];
        yield 'misspelled' => ['{titel} {First_Name}', ['title' => '', 'firstname' => ''], '1:1 missing titel (did you mean "title"?)', '1:9 missing First_Name (did you mean "firstname"?)'];
        yield 'of one row' => ["{dynamic r,rows}\n{r::*::name}{/dynamic}", $rows, '2:1 missing rows::1::name (did you mean "nmae"?)'];
        yield 'of every row, told once for what is at the top' => ['{dynamic r,rows}{x}{/dynamic}', $rows, '1:17 missing x'];
        yield 'named from the wrong place' => [
            '{dynamic r,rows}{name}{optional r::*::name}{r::*::total}{/optional}{/dynamic}{first}',
            $rows + ['total' => 1, 'user' => ['first' => 'x']],
            '1:17 missing name (did you mean "r::*::name"?)',
            '1:44 missing rows::0::total (did you mean "total"?)',
            '1:78 missing first (did you mean "user::first"?)',
        ];
        yield 'nothing but conditions and defaults' => ["{optional a}{b}{/optional}{!optional c 'x'}{/optional}{d e ''}", []];
        yield 'a section that is missing' => ['{dynamic r, rows}{/dynamic}', $rows, '1:1 missing  rows (did you mean "rows"?)'];
        yield 'and may be' => ['{dynamic r,none}{/dynamic}{!optional none}none{/optional}', ['none' => null]];
        yield 'no texts at the top' => [
            "{addslashes a}\n{htmlentities b}\n{htmlspecialchars c}\n{rawurlencode d}{dynamic r,d}{htmlspecialchars *}{/dynamic}",
            ['a' => 5, 'b' => null, 'c' => false, 'd' => [1.5]],
            '1:1 silent a', '2:1 silent b', '3:1 silent c', '4:1 silent d',
        ];
        yield 'blocked' => ["{a 'x'}{b c}{c}", ['a' => null, 'b' => false, 'c' => null], '1:1 blocked-default a', '1:8 blocked-default b'];
        yield 'texts of arrays' => ['{a}{dynamic a}{htmlspecialchars *}{/dynamic}', ['a' => [[1]]], '1:1 array-text a', '1:15 array-text a::0'];
        yield 'bytes' => ["{a}{htmlspecialchars b}{addslashes a}{htmlspecialchars a}", ['a' => "x\0y", 'b' => "\xE9"], '1:1 nul-byte a', '1:4 invalid-text b', '1:38 nul-byte a'];
        yield 'compared' => [
            "{optional a 5}{/optional}\n{optional b 1}{/optional}\n{optional c none}{/optional}{optional c 0}{/optional}\n{optional d x}{/optional}",
            ['a' => 5.0, 'b' => true, 'c' => 0, 'd' => ['x']],
            '1:1 compared a', '2:1 compared b', '3:1 compared c', '4:1 compared d',
        ];
        yield 'no arrays' => ["{dynamic a}{/dynamic}{dynamic b}{dynamic *::c}{/dynamic}{/dynamic}", ['a' => 'x', 'b' => [['c' => 5]]], '1:1 no-array a', '1:33 no-array b::0::c'];
        yield 'paths' => [
            '{a::b}{c::d}{optional e::f}{/optional}{0}{g::-1}{h::i}{j::k}{n::m \'\'}',
            ['a' => 'x', 'c' => 5, 'e' => true, 'zero', 'g' => [-1 => 1], 'h' => new ArrayObject(['i' => 1]), 'j' => null, 'n' => 'x'],
            '1:1 path a', '1:7 path c', '1:13 path e', '1:39 path 0', '1:42 path g::-1', '1:49 path h', '1:55 missing j::k', '1:61 path n',
        ];
        yield 'num' => [
            '{dynamic a}{/dynamic}{dynamic b}{/dynamic}{dynamic c}{/dynamic}{c::total}{dynamic d}{/dynamic}',
            ['a' => ['num' => 3, 'x' => 1], 'b' => ['num' => [1], 'x' => [2]], 'c' => ['num' => [1], 'total' => 1], 'd' => ['num' => [1]]],
            '1:1 num a::num', '1:22 num b::num',
        ];
        yield 'visible' => [
            '{optional a}{/optional}{optional b}{b::x}{/optional}',
            ['a' => ['visible' => 0, 'x' => 1], 'b' => ['visible' => true, 'x' => 1]],
            '1:1 visible a::visible',
        ];
        yield 'sections that are not open' => ["{r::*}{*::a 'x'}{!optional r::[*] 0}{/optional}{dynamic s,r::*}{/dynamic}", [], '1:1 no-section ', '1:17 no-section ', '1:48 no-section '];
        yield 'keywords as beginnings' => ['{optionals}{s::t}{/optional}{dynamics}{/dynamic}', ['s' => 'x', 'optionals' => 1, 'dynamics' => []], '1:12 path s', '1:29 no-array s'];
        yield 'the template itself' => [
            "{a:::}{x b:::}{y b:::}{dynamic r,l}{dynamic r,m}{/dynamic}{/dynamic}{z {q",
            ['x' => 1, 'l' => [1]],
            '1:1 fault ', '1:15 fault ', '1:36 fault ', '1:36 missing m', '1:69 swallow ',
        ];
        yield 'a comment' => ['{optional --}{anything}{/optional}', []];
    }

    public function testSeesReferencesAndObjects(): void
    {
        $rows = [['name' => 'a']];
        foreach ($rows as &$row) {
            $row['x'] = 1;
        }
        unset($row);
        $name = 'Ann';
        // Nothing shares the references in $rows any more; they are there all the same.
        $data = ["t\"\n}" => "\"\n  }\n", 'rows' => $rows, 'name' => &$name, 'o' => new stdClass()];
        $found = array_map(strval(...), new Check('T', "{dynamic r,rows}{r::*::name}{/dynamic}\n{htmlspecialchars name}{name}{o}")->problems($data));
        self::assertCount(3, $found);
        self::assertStringContainsString('rows::0: a PHP reference, through which no path goes', $found[0]);
        self::assertStringContainsString('T:2:1: name: a PHP reference, of which htmlspecialchars prints nothing', $found[1]);
        self::assertStringContainsString('T:2:30: o: an object (stdClass) has no text', $found[2]);
    }

    public function testFollowsIncludesByTheData(): void
    {
        $this->files([
            'page' => '{dynamic r,rows}{include row.tpl}{/dynamic}{include content}{include gone.tpl}{include number}',
            'row.tpl' => '{r::*::name}',
            'c.tpl' => "\n{body}",
            'd.json' => '{"rows": [{"name": 1}, {}], "content": "c.tpl", "number": 7}',
        ]);
        [$status, $output, $errors] = $this->template('check', 'page', 'd.json');
        self::assertSame([1, "1 set of data, 4 findings.\n"], [$status, $errors]);
        self::assertSame(
            "c.tpl:2:1: d.json: body: there is no \"body\": the tag itself stays in the page [missing]\n"
            . "page:1:61: d.json: there is no file \"gone.tpl\": nothing is included [missing-include]\n"
            . "page:1:79: d.json: number: there is no file \"number\": nothing is included (the number 7 in the data names no file: the tag's own text does) [missing-include]\n"
            . "row.tpl:1:1: d.json: rows::1::name: there is no \"name\": prints nothing [missing]\n",
            $output,
        );
    }

    public function testRowsNotesAndWrongUse(): void
    {
        $this->files(['t' => '{a}', 'rows' => "{\"a\": 1}\n" . str_repeat("{\"b\": 1}\n", 30), 'bad' => "{\n\"a\": ,}"]);
        [$status, $output, $errors] = $this->template('check', 't', 'rows', '--rows');
        self::assertSame(1, $status);
        self::assertStringStartsWith('t:1:1: rows:2: a: there is no "a"', $output);
        self::assertSame([20, "31 sets of data, 20 findings, and 10 more like them.\n"], [substr_count($output, "\n"), $errors]);
        self::assertSame([0, ''], array_slice($this->template('check', 't', 'rows', '--rows', '--ignore', 'missing'), 0, 2));
        self::assertSame(
            [0, "t:1:1: hint: b: no tag asks for it [unused]\n"],
            array_slice($this->template('check', 't', '-s', 'a=1', '-s', 'b=1', '--notes', '--render'), 0, 2),
        );
        [$status, , $errors] = $this->template('check', 't', 'bad');
        self::assertSame([2, "template: The data in bad is not a JSON object or list: Syntax error at line 2, column 6.\n"], [$status, $errors]);
        [, , $errors] = $this->template('check', 't', 'bad', '--rows', '-q');
        self::assertSame("template: The data in line 1 of bad is not a JSON object or list: Syntax error at column 2.\n", $errors);
        self::assertSame([2, 2], [$this->template('check', 't')[0], $this->template('check', 'none', 'rows')[0]]);
    }

    public function testLintAndRenderDoItToo(): void
    {
        $this->files([
            'p/page.tpl' => '{dynamic r,rows}{include p/row.tpl}{/dynamic}',
            'p/row.tpl' => '{r::*::name}',
            'p/d.json' => "\xEF\xBB\xBF{\"rows\": [{}]}",
            'template.json' => '{"paths": ["p"], "data": {"p/*.tpl": "p/d.json"}}',
        ]);
        $finding = 'p/row.tpl:1:1: p/d.json: rows::0::name: there is no "name": prints nothing [missing]';
        foreach ([['lint', 'p', '-d', 'p/d.json'], ['lint'], ['check', 'p/page.tpl']] as $command) {
            self::assertSame([1, "$finding\n"], array_slice($this->template(...$command), 0, 2), implode(' ', $command));
        }
        self::assertSame(
            [1, '', str_replace('p/d.json: ', '', $finding) . "\n"],
            $this->template('render', '--strict', 'p/page.tpl', 'p/d.json'),
        );
        self::assertSame([0, 'Ann', ''], $this->template('render', '--strict', 'p/page.tpl', '--set-json', 'rows=[{"name": "Ann"}]'));
    }
}

<?php

declare(strict_types=1);

use PHPUnit\Framework\Attributes\DataProvider;
use PHPUnit\Framework\TestCase;
use TemplateCli\Language\Fault;
use TemplateCli\Language\Hint;
use TemplateCli\Language\Scanner;

/** Places of faults, and hints. Which messages there are is for AgreementTest to prove. */
final class ScannerTest extends TestCase
{
    #[DataProvider('places')]
    public function testPlace(string $text, string ...$faults): void
    {
        $found = array_map(
            static fn (Fault $fault): string => "{$fault->place->line}:{$fault->place->column} $fault->message",
            array_values(new Scanner()->scanText($text, 'T')->faults),
        );
        self::assertSame($faults, $found);
    }

    /** @return iterable<string, list<string>> */
    public static function places(): iterable
    {
        yield 'no fault' => ["{{a}} { b }\n}}{a}{optional b}{/optional}"];
        yield 'first line' => ["{a'b}", "1:1 Variable block bad parameter 'a'b': ' is forbidden in variable"];
        yield 'columns are characters' => ["é\n日本 {:::}", "2:4 Bad formated parameter':::': too many :"];
        yield 'bytes where it is not UTF-8' => ["\xE9\xE9 {:::}", "1:4 Bad formated parameter':::': too many :"];
        yield 'a tag over several lines begins where it begins' => ["a\r\n {b\n'c\nd}", "2:2 Variable block bad parameter 'b\n'c\nd': could not find second ' as the last character"];
        yield 'several faults' => [
            "{include *}\n{dynamic}\n{/dynamic}\n{/optional}",
            "1:1 Include block bad parameter '*': asterisk in filename is forbidden",
            "2:1 Dynamic block bad parameter '': no parameter found",
            '4:1 Unexpected closing optional tag',
        ];
        yield 'every open section, the innermost first' => ["{optional a}\n{dynamic r,b}", '2:1 Missing closing tag', '1:1 Missing closing tag'];
        yield 'one forgotten closing tag is one fault' => [
            "{dynamic r,a}{optional b}\n{/dynamic}{c}{optional d}{/optional}",
            '2:1 Unexpected closing dynamic tag',
        ];
        yield 'a refused section is open all the same' => ["{optional a::}{/optional}{/optional}", "1:1 Bad formated parameter'a::': too many :", '1:26 Unexpected closing optional tag'];
    }

    public function testTellsWhatNeedsDataFromWhatDoesNot(): void
    {
        $mark = static fn (string $text): array => array_map(
            static fn (Fault $fault): array => [$fault->needsData, $fault->atRendering],
            array_values(new Scanner()->scanText($text)->faults),
        );
        $nested = static fn (string $outer): string => "{dynamic r,$outer}{dynamic r,b}{/dynamic}{/dynamic}";
        self::assertSame([[true, false]], $mark($nested('a')), 'a name is only kept when its array is there');
        self::assertSame([[false, false]], $mark($nested('*::a')));
        self::assertSame([[false, true]], $mark('{*::a b:::c}'), 'without a section, rendering tries every alternative');
        self::assertSame([[true, true]], $mark('{dynamic r,a}{*::a b:::c}{/dynamic}'));
        self::assertSame([[false, false]], $mark('{a b:::c}'));
    }

    #[DataProvider('hints')]
    public function testHint(string $text, string ...$hints): void
    {
        $found = array_map(
            static fn (Hint $hint): string => "{$hint->place->line}:{$hint->place->column} {$hint->kind->value}",
            new Scanner()->scanText($text, 'T')->hints,
        );
        self::assertSame($hints, $found);
    }

    /** @return iterable<string, list<string>> */
    public static function hints(): iterable
    {
        yield 'plain text' => ["{a} <a@example.org> 1 < 2 {dynamic r,b}{r::*::c}{/dynamic}{optional d 'x  y'}{/optional}"];
        yield 'raw in HTML' => ["<p>{a 'b'}{'default'}{htmlspecialchars c}</p>", '1:4 raw-html'];
        yield 'swallowed' => ["{a {b}\n{/optional}", '1:1 swallow'];
        yield 'unterminated' => ['x{a', '1:2 unterminated'];
        yield 'keyword-like' => ['{optionals}{/optional}{include_me}{dynamic}{rawurlencode a}', '1:1 keyword-like', '1:23 keyword-like', '1:23 missing-include'];
        yield 'percent' => ['{50%}{htmlspecialchars %d}{a \'100%\'}', '1:1 percent-name', '1:6 percent-name'];
        yield 'unknown section' => [
            '{dynamic r,a}{*}{r::*}{s::*}{/dynamic}{*}{dynamic b}{b::[*]}{/dynamic}',
            '1:23 unknown-section',
            '1:39 unknown-section',
            '1:53 unknown-section',
        ];
        yield 'code' => ['{color:red} {"a": 1} {f()} {a:b} {a::b x \'c; d\'}{.a}{a.b}', '1:1 code-like', '1:13 code-like', '1:22 code-like', '1:28 code-like', '1:49 code-like'];
        yield 'braces that are lost' => [
            "<script>\nfunction f() { if (a) { b() }}\nfunction g() {{ if (a) {{ b() }} }}</script>\n{ x: { y: 1 }}</style>",
            '2:29 closing-braces',
            '4:13 closing-braces',
        ];
        yield 'braces that balance' => ["<style>a{{b: {htmlspecialchars c}}} d { e }</style> { {{ }} } {}{{x}} {{{htmlspecialchars y}}}"];
        yield 'braces too many, of each part' => ["}\n<style>a {{ b }</style><script>if (a) {\n {{</script>}", '2:39 braces', '1:1 braces'];
        yield 'a key compared with quotes' => ["{dynamic r,a}{optional r::[*] 'b'}{/optional}{optional r::* 'b'}{/optional}{/dynamic}", '1:14 quoted-key'];
        yield 'bytes' => ["\xEF\xBB\xBF{a}\n\0", '2:1 nul-byte', '1:1 byte-order-mark'];
        yield 'UTF-16' => ["\xFF\xFE{\0a\0}\0", '1:1 utf-16'];
        yield 'marks' => ['<p>{a_html}{b}{s::*}{optional --}lint allow-raw *_html{/optional}{optional --}lint off unknown-section{/optional}', '1:12 raw-html', '1:15 raw-html'];
        yield 'blanks' => ['{dynamic r, a}{/dynamic}{optional b  c}{/optional}{addslashes d e}', '1:1 blank', '1:25 blank', '1:51 blank'];
    }

    public function testAHintRepeatsNoMoreThanALine(): void
    {
        $text = "<p>{a " . str_repeat("b\nc ", 5_000) . "{d}\n{optional x}";
        foreach (new Scanner()->scanText($text, 'T')->hints as $hint) {
            self::assertLessThan(300, strlen($hint->message));
            self::assertStringNotContainsString("\n", $hint->message);
        }
        self::assertSame('swallow', $hint->kind->value);
    }

    public function testLooksNamesUpAsTheEngineDoes(): void
    {
        $data = ['a' => [5 => 'x', '05' => 'y', -1 => 'z', 'b' => ['c' => 'd']], 0 => 'top', '' => 'empty'];
        $find = static fn (string ...$path): mixed => TemplateCli\Language\UserData::lookup(TemplateCli\Language\Slot::top($data), $path)->slot?->value;
        self::assertSame(['x', 'y', 'd', 'empty'], [$find('a', '5'), $find('a', '05'), $find('a', 'b', 'c'), $find('')]);
        self::assertSame([null, null, null, null], [$find('0'), $find('a', '-1'), $find('a', '5', 'x'), $find('none')]);
    }

    public function testCostIsInLineWithTheSizeOfTheText(): void
    {
        $start = self::processorTime();
        foreach (['{', '}', '{{', '{a', '{a}', '{*::a}', '{optional a}', '{dynamic r,*::a}', '{/optional}', '{a::', "{'"] as $piece) {
            new Scanner()->scanText(str_repeat($piece, 20_000), 'T');
        }
        new Scanner()->scanText('{' . str_repeat('a::', 100_000) . 'b}', 'T');
        // In proportion it is a second, by the square of the size an hour.
        self::assertLessThan(60, self::processorTime() - $start);
    }

    private static function processorTime(): float
    {
        $usage = getrusage();
        return $usage['ru_utime.tv_sec'] + $usage['ru_utime.tv_usec'] / 1e6;
    }
}

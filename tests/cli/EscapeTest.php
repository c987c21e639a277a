<?php

declare(strict_types=1);

use Random\Engine\Mt19937;
use Random\Randomizer;
use TemplateCli\Json;
use TemplateCli\Language\Literal;

final class EscapeTest extends CliTestCase
{
    public function testAnyBytesComeBack(): void
    {
        $random = new Randomizer(new Mt19937(1));
        for ($round = 0; $round < 20_000 / self::slowness(); ++$round) {
            $text = $random->getBytesFromString("{}{}{} \t\r\n\f\0a'" . $random->getBytes(2), $random->getInt(1, 12));
            self::assertSame($text, template(Literal::escape($text), [], true), bin2hex($text));
        }
    }

    /** The style sheets and scripts of PHPUnit's own reports, which are on every machine that comes here. */
    public function testRealStyleSheetsAndScriptsComeBack(): void
    {
        $all = new RecursiveIteratorIterator(new RecursiveDirectoryIterator('/usr/share/php/SebastianBergmann'));
        $files = iterator_to_array(new RegexIterator($all, '/\.(css|js)$/'), false);
        self::assertGreaterThan(5, count($files));
        foreach ($files as $file) {
            $escaped = $this->template('escape', (string) $file)[1];
            $text = file_get_contents((string) $file);
            self::assertSame($text, template($escaped, [], true), (string) $file);
        }
        self::assertSame("a { b }\n", $this->templateWithInput("a { b }\n", 'escape')[1], 'what needs no doubling stays');
    }

    public function testBrokenJsonHasAPlace(): void
    {
        foreach ([
            "{\"a\": 1,\n  \"é\": x}" => 'line 2, column 8',
            "{\"a\": 1,}" => 'line 1, column 9',
            "[\"x\ny\"]" => 'line 1, column 2',
            "[[1 2]]" => 'line 1, column 5',
            "[1]\n]" => 'line 2, column 1',
            '' => 'line 1, column 1',
            '{' => 'line 1, column 2',
            "{\"a\"\n, 1}" => 'line 2, column 1',
            "\xEF\xBB\xBF[01]" => 'line 1, column 2',
            "[\"a\",\n\"\xFF\"]" => 'line 2, column 2',
        ] as $json => $place) {
            try {
                Json::data((string) $json);
                self::fail((string) $json);
            } catch (JsonException $exception) {
                self::assertStringEndsWith(" at $place", $exception->getMessage(), (string) $json);
            }
        }
        self::assertSame(['a' => 1], Json::data("\xEF\xBB\xBF{\"a\": 1}"));
        $this->expectExceptionMessage('it is UTF-16');
        Json::data("\xFF\xFE{\0}\0");
    }
}

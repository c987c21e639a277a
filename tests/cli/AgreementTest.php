<?php

declare(strict_types=1);

use PHPUnit\Framework\Attributes\DataProvider;
use TemplateCli\Engine;
use TemplateCli\Language\Fault;
use TemplateCli\Language\Scanner;
use TemplateCli\Lint\EngineMessage;

require_once __DIR__ . '/../model/random_cases.php';

/**
 * Random templates, the same in each run: lint's scanner must find what template() reports.
 *
 * Without data the first fault must be the engine's, or none. With data, whatever the engine reports must be among
 * the faults that the scanner found, and where it found none the engine must not report any.
 */
final class AgreementTest extends CliTestCase
{
    private const array DATA = [
        ['a' => [1, ['a' => [1]]], 'b' => 'one.tpl', 'rows' => ['b' => 'two.tpl', 'num' => [1]], 'list' => [[1]]],
        ['a' => 'x', 'rows' => [['b' => 5]], '' => [1], 'map' => [], 0 => 'one.tpl'],
    ];

    #[DataProvider('seeds')]
    public function testScannerAndEngineAgree(int $seed): void
    {
        $cases = new RandomCases($seed);
        $accepted = 0;
        for ($round = 0; $round < 1_500 / self::slowness(); ++$round) {
            ['template' => $template, 'isText' => $isText, 'files' => $files] = $cases->next();
            // What is only met while rendering comes after all else.
            $template = ($round % 5 === 0 ? '{*::a b:::c}' : '') . $template;
            $this->files($files + ['top' => $template]);
            $accepted += $this->compare($isText ? $template : 'top', $isText);
        }
        // Else the generator makes too much nonsense to prove anything.
        self::assertGreaterThan(250 / self::slowness(), $accepted);
        self::assertLessThan(1_300 / self::slowness(), $accepted);
    }

    /** @return list<array{int}> */
    public static function seeds(): array
    {
        return [[1], [2], [3], [4]];
    }

    /** Every reference of up to four parts, in every tag that has one. */
    public function testOnEveryShapeOfReference(): void
    {
        $references = $shorter = ['a', '*', '[*]', '.*', ''];
        for ($parts = 2; $parts <= 4; ++$parts) {
            $longer = [];
            foreach ($shorter as $left) {
                array_push($longer, "$left::a", "$left::*", "$left::[*]", "$left::.*", "$left::");
            }
            array_push($references, ...$longer);
            $shorter = $longer;
        }
        $accepted = 0;
        foreach ($references as $number => $reference) {
            if ($number % self::slowness() > 0) {
                continue;
            }
            foreach (['{x %s}', '{addslashes %s}', '{optional %s y}{/optional}', '{rdynamic r,%s}{/rdynamic}', '{include %s}'] as $tag) {
                $accepted += (int) $this->compare(sprintf($tag, $reference), true);
            }
        }
        self::assertCount(780, $references);
        self::assertGreaterThan(200 / self::slowness(), $accepted);
    }

    /** Returns whether the engine accepted the template without data. */
    private function compare(string $template, bool $isText): bool
    {
        foreach ([[], ...self::DATA] as $data) {
            $scanner = new Scanner($data);
            $scan = $isText ? $scanner->scanText($template) : $scanner->scanFile($template);
            $expected = $data === [] ? array_filter([$scan->firstFaultWithoutData()]) : $scan->faults;
            $expected = array_map(static fn (Fault $fault): string => $fault->warning($template), $expected);
            $warning = new Engine()->render($template, $data, $isText)->fault;
            $agrees = $warning === null
                ? $data !== [] || $expected === []
                : array_any($expected, static fn (string $message): bool => EngineMessage::isSame($warning, $message));
            $this->addToAssertionCount(1);
            $agrees || self::fail(var_export([
                'template' => $isText ? $template : file_get_contents($template),
                'files' => array_map(file_get_contents(...), glob('*')),
                'data' => $data,
                'engine' => $warning,
                'scanner' => $expected,
            ], true));
            $accepted ??= $warning === null;
        }

        return $accepted;
    }
}

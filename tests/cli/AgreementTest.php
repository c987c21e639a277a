<?php

declare(strict_types=1);

use PHPUnit\Framework\Attributes\DataProvider;
use Random\Engine\Mt19937;
use Random\Randomizer;
use TemplateCli\Engine;
use TemplateCli\Language\Fault;
use TemplateCli\Language\Scanner;
use TemplateCli\Lint\EngineMessage;

/**
 * Random templates, the same in each run: lint's scanner must find what template() reports.
 *
 * Without data the first fault must be the engine's, or none. With data, whatever the engine reports must be among
 * the faults that the scanner found, and where it found none the engine must not report any.
 */
final class AgreementTest extends CliTestCase
{
    private const array PIECES = [
        '{', '}', '{{', '}}', '}', '}', '}', '{a}', '{b::c}', '{*::a', '[*]', '::', '*', '.*', "'", ' ', 'r,', 's,', 'a', 'b',
        '{optional ', '{!optional ', '{/optional}', '{dynamic ', '{rdynamic ', '{/dynamic}', '{/rdynamic}', '{include ',
        '{htmlspecialchars ', "\n", "\f", '%', '%%', 'é', "\0", '{r::*::a b:::c}', '{*::a ::}', '{a:::b}', '{dynamic ,}',
    ];
    /** Sections are closed most of the time, so that what is behind the first fault is reached as well. */
    private const array SECTIONS = [
        ['{optional a}', '{/optional}'], ['{!optional a}', '{/optional}'], ['{optional r::*::a x}', '{/optional}'],
        ['{dynamic r,a}', '{/dynamic}'], ['{dynamic r,*::a}', '{/dynamic}'], ['{rdynamic s,b}', '{/rdynamic}'], ['{dynamic r,b}', '{/dynamic}'],
    ];
    private const array DATA = [
        ['a' => [1, ['a' => [1]]], 'b' => 'first', 'r' => ['num' => [1]]],
        ['a' => 'x', 'b' => ['c' => 5], '' => [1], 0 => 'first'],
    ];

    private Randomizer $random;

    #[DataProvider('seeds')]
    public function testScannerAndEngineAgree(int $seed): void
    {
        $this->random = new Randomizer(new Mt19937($seed));
        $accepted = 0;
        for ($round = 0; $round < 1_500; ++$round) {
            if ($round % 30 === 0) {
                $this->files(['first' => $this->part(2), 'second' => 'x' . $this->part(1)]);
            }
            $text = $this->part(2);
            $isText = $this->random->getInt(0, 2) > 0;
            $this->files(['top' => $text]);
            $accepted += $this->compare($isText ? $text : 'top', $isText);
        }
        // Else the generator makes too much nonsense to prove anything.
        self::assertGreaterThan(250, $accepted);
        self::assertLessThan(1_300, $accepted);
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
        foreach ($references as $reference) {
            foreach (['{x %s}', '{addslashes %s}', '{optional %s y}{/optional}', '{rdynamic r,%s}{/rdynamic}', '{include %s}'] as $tag) {
                $accepted += (int) $this->compare(sprintf($tag, $reference), true);
            }
        }
        self::assertCount(780, $references);
        self::assertGreaterThan(200, $accepted);
    }

    private function part(int $depth): string
    {
        $text = '';
        for ($count = $this->random->getInt(0, 3); $count > 0; --$count) {
            $text .= match ($this->random->getInt(0, $depth > 0 ? 7 : 3)) {
                0 => $this->one(['{a b}', '{a *::b}', '{b::c}', '{r::*::a}', "{x 'y'}", 'text', "line\n", '{addslashes *::a}']),
                1 => $this->one(['{include first}', '{include second}', '{include 0}', '{include b}', '{include none}', '{a *::b}', '{r::*::a s::::}']),
                2, 3 => $this->random->getInt(0, 3) === 0 ? $this->one(self::PIECES) . $this->one(self::PIECES) : 'x',
                default => implode($this->part($depth - 1), $this->one(self::SECTIONS)),
            };
        }

        return $text;
    }

    /**
     * @template T
     *
     * @param list<T> $choices
     *
     * @return T
     */
    private function one(array $choices): mixed
    {
        return $choices[$this->random->getInt(0, count($choices) - 1)];
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

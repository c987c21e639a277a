<?php

declare(strict_types=1);

namespace TemplateCli;

use TemplateCli\Check\Analysis;
use TemplateCli\Check\Problem;
use TemplateCli\Check\Problems;
use TemplateCli\Check\Trace;
use TemplateCli\Check\Unused;
use TemplateCli\Contract\Contract;
use TemplateCli\Language\Place;
use TemplateCli\Language\Scan;
use TemplateCli\Language\Scanner;
use TemplateCli\Language\Slot;

/**
 * Holds data against a template: what is missing, what prints nothing, what is not used.
 *
 *     foreach (new Check('page.tpl')->problems($data) as $problem) {
 *         echo "$problem\n";
 *     }
 */
final class Check
{
    /** Beyond so many openings of files for one template, its way is not gone. */
    private const int MOST_VISITS = 10_000;

    /**
     * @param ?string $text the template itself; then $template is only what it is called in findings
     * @param bool $isDecoded the data come from JSON, and hold no PHP references
     */
    public function __construct(
        private readonly string $template,
        private readonly ?string $text = null,
        private readonly bool $isDecoded = false,
    ) {
    }

    /**
     * What is wrong, in the order of the template.
     *
     * @param array<mixed> $data
     * @param bool $withNotes also what is hardly ever a mistake, such as data that no tag asks for
     * @param ?\Closure(Language\Node, string|\Stringable): void $print is told each text that a tag leaves in the page, before it is escaped
     *
     * @return list<Problem>
     */
    public function problems(array $data, bool $withNotes = false, ?\Closure $print = null): array
    {
        $problems = new Problems();
        $root = Slot::top($data, $this->isDecoded);
        $scan = $this->scan($root);
        if ($scan === null) {
            $problems->addFault(new Place($this->template), "Could not open file $this->template");

            return $problems->all;
        }
        new Analysis($root, $problems)->of($scan);
        if ($scan->visits <= self::MOST_VISITS) {
            $contract = Contract::of($scan);
            new Trace($root, $problems, $contract->handled, $contract->named(), $print)->body($scan);
            !$withNotes ?: new Unused($problems, $this->template)->in($data, $contract->root);
        }

        return self::ordered($withNotes ? $problems->all : array_filter(
            $problems->all,
            static fn (Problem $problem): bool => !$problem->rule->isNote(),
        ));
    }

    private function scan(Slot $data): ?Scan
    {
        $scanner = new Scanner($data);

        return $this->text === null ? $scanner->scanFile($this->template) : $scanner->scanText($this->text, $this->template);
    }

    /**
     * @param array<Problem> $problems
     *
     * @return list<Problem>
     */
    private static function ordered(array $problems): array
    {
        $order = static fn (Problem $problem): array => [$problem->place->file, $problem->place->line, $problem->place->column];
        usort($problems, static fn (Problem $a, Problem $b): int => $order($a) <=> $order($b));

        return $problems;
    }
}

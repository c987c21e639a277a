<?php

declare(strict_types=1);

namespace TemplateCli\Check;

use TemplateCli\Check;
use TemplateCli\Engine;
use TemplateCli\Language\Place;
use TemplateCli\Lint\Finding;
use TemplateCli\Lint\Report;

/** Holds one set of data after the other against a template. */
final class Checker
{
    /** Of the same finding in a million rows, so many are told. */
    private const int MOST_OF_A_KIND = 20;

    /** Findings that are not told one by one. */
    public private(set) int $more = 0;
    private readonly Check $check;
    private readonly Report $report;
    /** @var array<string, int> how many there are, by place and rule */
    private array $kinds = [];

    /** @param list<Rule> $ignored */
    public function __construct(
        private readonly string $template,
        private readonly ?Engine $engine,
        private readonly bool $withNotes,
        private readonly array $ignored,
    ) {
        $this->check = new Check($template, isDecoded: true);
        $this->report = new Report();
    }

    /** @param array<mixed> $data */
    public function check(array $data, string $source): void
    {
        ++$this->report->files;
        $hasFault = false;
        foreach ($this->check->problems($data, $this->withNotes) as $problem) {
            $hasFault = $hasFault || $problem->rule === Rule::Fault;
            in_array($problem->rule, $this->ignored, true) ?: $this->add($problem, $source);
        }
        $message = $this->engine?->render($this->template, $data)->fault;
        if ($message !== null && !$hasFault) {
            $note = 'reported by the engine; its place is not known';
            $this->add(new Problem(new Place($this->template), Rule::Fault, '', $message, $note), $source);
        }
    }

    public function report(): Report
    {
        return $this->report;
    }

    private function add(Problem $problem, string $source): void
    {
        $kind = "$problem->place {$problem->rule->value}";
        if ($problem->rule->isOfTemplate()) {
            // Once is enough.
            $kind .= $problem->message;
            if (isset($this->kinds[$kind])) {
                return;
            }
        }
        $this->kinds[$kind] = ($this->kinds[$kind] ?? 0) + 1;
        if ($this->kinds[$kind] > self::MOST_OF_A_KIND) {
            $this->more += 1 + $problem->more;
        } else {
            $this->report->findings[] = Finding::ofProblem($problem, $source);
        }
    }
}

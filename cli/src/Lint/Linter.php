<?php

declare(strict_types=1);

namespace TemplateCli\Lint;

use TemplateCli\Check;
use TemplateCli\Engine;
use TemplateCli\Language\Fault;
use TemplateCli\Language\Files;
use TemplateCli\Language\Hint;
use TemplateCli\Language\HintKind;
use TemplateCli\Language\Marks;
use TemplateCli\Language\Place;
use TemplateCli\Language\Scan;
use TemplateCli\Language\Scanner;
use TemplateCli\Language\Slot;

/** Lints files one by one, and what they include with them; reports each finding once. */
final class Linter
{
    /** Beyond so many openings of files for one template, the engine is not asked for its opinion. */
    private const int MOST_VISITS = 10_000;

    /** @var array<string, Scanner> by the source of the data */
    private array $scanners = [];
    /** @var array<string, Scan> by name */
    private array $scans = [];
    /** @var array<string, list<Sample>> by name of the template */
    private array $samples = [];
    /** @var array<string, string> templates that are in no file, by the name that they are given */
    private array $texts = [];
    /** @var array<string, Finding> by place and message */
    private array $faults = [];

    /**
     * @param list<HintKind> $hints
     * @param list<string> $rawNames patterns of references that may be printed raw
     */
    public function __construct(
        private readonly array $hints,
        private readonly array $rawNames,
        private readonly ?Engine $engine,
        private readonly Report $report,
    ) {
    }

    /** @param list<Sample> $samples data that go with the template */
    public function file(string $name, array $samples): void
    {
        $this->samples[$name] = $samples;
        foreach ($samples ?: [new Sample('', [])] as $sample) {
            $scanner = $this->scanners[$sample->source] ??= new Scanner(Slot::top($sample->data, isDecoded: true));
            $text = $this->texts[$name] ?? null;
            $scan = $text === null ? $scanner->scanFile($name) : $scanner->scanText($text, $name);
            if ($scan === null) {
                $this->add(new Fault(new Place($name), "Could not open file $name"));

                return;
            }
            $this->scans[$name] ??= $scan;
            array_walk($scan->faults, $this->add(...));
            $this->askEngine($name, $scan, $sample->data);
        }
    }

    /**
     * A template that is in no file, under the name of one.
     *
     * @param list<Sample> $samples
     */
    public function text(string $name, string $text, array $samples): void
    {
        $this->texts[$name] = $text;
        $this->file($name, $samples);
    }

    /** Ends the run: everything that was found, by file and line. */
    public function finish(): void
    {
        array_push($this->report->findings, ...array_values($this->faults), ...$this->checked());
        $this->report->isSampled = $this->report->isSampled && !in_array([], $this->samples, true);
        $around = new SectionsAround($this->scans);
        foreach ($this->scans as $name => $scan) {
            $this->report->sectionReferences += $scan->sectionReferences;
            $unknown = [];
            foreach (array_filter($scan->hints, $this->wants(...)) as $hint) {
                if ($hint->kind === HintKind::UnknownSection) {
                    // One hint will do: a file that is made to be included may have nothing but such references.
                    if (isset($unknown[$hint->section]) || $around->has($name, $hint->section)) {
                        continue;
                    }
                    $unknown[$hint->section] = true;
                }
                $this->report->findings[] = Finding::ofHint($hint);
            }
        }
    }

    /**
     * What the samples lack. A file that others include is seen with them, in the sections that they have open.
     *
     * @return list<Finding>
     */
    private function checked(): array
    {
        $included = array_merge(...array_map(static fn (Scan $scan): array => array_keys($scan->reached), array_values($this->scans)));
        $included = array_flip(array_map(static fn (int|string $name): string => Files::resolve("$name") ?? "$name", $included));
        $findings = [];
        foreach (array_intersect_key($this->samples, $this->scans) as $name => $samples) {
            if (isset($included[Files::resolve($name) ?? $name])) {
                continue;
            }
            foreach ($samples as $sample) {
                $check = new Check($name, $this->texts[$name] ?? null, isDecoded: true);
                foreach ($check->problems($sample->data) as $problem) {
                    // Faults are known already.
                    $problem->rule->isOfTemplate() ?: $findings[] = Finding::ofProblem($problem, $sample->source);
                }
            }
        }

        return $findings;
    }

    /** @param array<mixed> $data */
    private function askEngine(string $name, Scan $scan, array $data): void
    {
        if ($this->engine === null) {
            return;
        }
        if ($scan->opaque !== [] || $scan->visits > self::MOST_VISITS) {
            $this->report->notAsked[] = $name;

            return;
        }
        $text = $this->texts[$name] ?? null;
        $message = $this->engine->render($text ?? $name, $data, $text !== null)->fault;
        if ($text !== null && str_ends_with($message ?? '', " in $text")) {
            $message = substr($message, 0, -strlen($text)) . $name;
        }
        $isKnown = static fn (Fault $fault): bool => EngineMessage::isSame($message ?? '', $fault->warning($name));
        if ($message !== null && !array_any($scan->faults, $isKnown)) {
            $this->add(new Fault(new Place($name), $message, 'reported by the engine; lint does not know the place'));
        }
    }

    /** The same file can have two names, as an argument and in an include tag. */
    private function add(Fault $fault): void
    {
        $place = $fault->place;
        $key = (Files::resolve($place->file) ?? $place->file) . ":$place->line:$place->column:$fault->message";
        $this->faults[$key] ??= Finding::ofFault($fault);
    }

    private function wants(Hint $hint): bool
    {
        return in_array($hint->kind, $this->hints, true)
            && !($hint->kind === HintKind::RawHtml && Marks::allows($this->rawNames, $hint->references));
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Lint;

use TemplateCli\Engine;
use TemplateCli\Language\Fault;
use TemplateCli\Language\Files;
use TemplateCli\Language\Hint;
use TemplateCli\Language\HintKind;
use TemplateCli\Language\Place;
use TemplateCli\Language\Scan;
use TemplateCli\Language\Scanner;

/** Lints files one by one, and what they include with them; reports each finding once. */
final class Linter
{
    /** Beyond so many openings of files for one template, the engine is not asked for its opinion. */
    private const int MOST_VISITS = 10_000;

    private readonly Scanner $scanner;
    /** @var array<string, Scan> by name */
    private array $scans = [];
    /** @var array<string, Finding> by place and message */
    private array $faults = [];

    /**
     * @param array<mixed> $data
     * @param list<HintKind> $hints
     * @param list<string> $rawNames patterns of references that may be printed raw
     */
    public function __construct(
        private readonly array $data,
        private readonly array $hints,
        private readonly array $rawNames,
        private readonly ?Engine $engine,
        private readonly Report $report,
    ) {
        $this->scanner = new Scanner($data);
    }

    public function file(string $name): void
    {
        $scan = $this->scanner->scanFile($name);
        if ($scan === null) {
            $this->add(new Fault(new Place($name), "Could not open file $name"));

            return;
        }
        $this->scans[$name] = $scan;
        array_walk($scan->faults, $this->add(...));
        $this->askEngine($name, $scan);
    }

    /** Ends the run: everything that was found, by file and line. */
    public function finish(): void
    {
        $this->report->findings = array_values($this->faults);
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
        usort($this->report->findings, static fn (Finding $a, Finding $b): int => self::order($a) <=> self::order($b));
    }

    /** @return array{string, int, int, bool} */
    private static function order(Finding $finding): array
    {
        return [$finding->place->file, $finding->place->line, $finding->place->column, !$finding->isFault()];
    }

    private function askEngine(string $name, Scan $scan): void
    {
        if ($this->engine === null) {
            return;
        }
        if ($scan->opaque !== [] || $scan->visits > self::MOST_VISITS) {
            $this->report->notAsked[] = $name;

            return;
        }
        $message = $this->engine->render($name, $this->data)->fault;
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
        $mayBeRaw = fn (string $name): bool => array_any(
            $this->rawNames,
            static fn (string $glob): bool => fnmatch($glob, $name),
        );

        return in_array($hint->kind, $this->hints, true)
            && !($hint->kind === HintKind::RawHtml && array_all($hint->references, $mayBeRaw));
    }
}

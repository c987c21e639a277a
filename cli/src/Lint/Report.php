<?php

declare(strict_types=1);

namespace TemplateCli\Lint;

/** What a run of lint found, and what it could not see. */
final class Report
{
    /** @var list<Finding> */
    public array $findings = [];
    /** @var list<string> files that the engine was not asked about */
    public array $notAsked = [];
    /** There were data for all templates. */
    public bool $isSampled = true;
    public int $files = 0;
    public int $sectionReferences = 0;

    public function sort(): void
    {
        $order = static fn (Finding $finding): array
            => [$finding->place->file, $finding->place->line, $finding->place->column, !$finding->isFault()];
        usort($this->findings, static fn (Finding $a, Finding $b): int => $order($a) <=> $order($b));
    }

    public function faults(): int
    {
        return count(array_filter($this->findings, static fn (Finding $finding): bool => $finding->isFault()));
    }

    public function hints(): int
    {
        return count($this->findings) - $this->faults();
    }
}

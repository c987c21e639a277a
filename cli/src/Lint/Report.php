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
    /** @var list<string> files that hold no text */
    public array $binary = [];
    public int $files = 0;
    public int $sectionReferences = 0;

    public function faults(): int
    {
        return count(array_filter($this->findings, static fn (Finding $finding): bool => $finding->isFault()));
    }

    public function hints(): int
    {
        return count($this->findings) - $this->faults();
    }
}

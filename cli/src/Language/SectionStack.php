<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** The sections that are open at a point of a template, and the names under which references reach them. */
final class SectionStack
{
    /** @var list<OpenSection> */
    private array $sections = [];
    /** @var array<array{int, int}> for the name of each open repeated section: how many have it, and keep it */
    private array $names = [];
    /** @var array<string, int> how many sections wait for this closing tag */
    private array $closings = [];

    public function __construct(private readonly Scan $scan)
    {
    }

    public function push(OpenSection $section): void
    {
        $this->sections[] = $section;
        $this->count($section, 1);
    }

    public function pop(): void
    {
        $section = array_pop($this->sections);
        $this->scan->end($section->node);
        $this->count($section, -1);
    }

    private function count(OpenSection $section, int $change): void
    {
        $closing = $section->tag->keyword->closedBy()->value;
        $this->closings[$closing] = ($this->closings[$closing] ?? 0) + $change;
        if (!$section->isRepeated()) {
            return;
        }
        [$open, $kept] = $this->names[$section->name] ?? [0, 0];
        $this->names[$section->name] = [$open + $change, $kept + ($section->nameIsKept ? $change : 0)];
        if ($open + $change === 0) {
            unset($this->names[$section->name]);
        }
    }

    public function innermost(): ?OpenSection
    {
        return $this->sections === [] ? null : $this->sections[array_key_last($this->sections)];
    }

    /** To go on after a forgotten closing tag: ends the section that this tag was meant for, if there is one. */
    public function closeOuter(Keyword $closing): void
    {
        if (($this->closings[$closing->value] ?? 0) === 0) {
            return;
        }
        while ($this->innermost()->tag->keyword->closedBy() !== $closing) {
            $this->pop();
        }
        $this->pop();
    }

    /** Can a reference name this section? The empty name is the innermost one's. */
    public function knows(string $name): bool
    {
        return $name === '' ? $this->names !== [] : isset($this->names[$name]);
    }

    /** Does a section keep this name even when there is no data? */
    public function keeps(string $name): bool
    {
        return ($this->names[$name][1] ?? 0) > 0;
    }

    /** @return list<string> every name that knows() accepts */
    public function names(): array
    {
        return $this->names === [] ? [] : array_values(array_unique(['', ...array_map(strval(...), array_keys($this->names))]));
    }

    /** @return list<OpenSection> the innermost first */
    public function all(): array
    {
        return array_reverse($this->sections);
    }

    /** Is what stands here rendered when there is no data? */
    public function isLive(): bool
    {
        return $this->innermost()->live ?? true;
    }
}

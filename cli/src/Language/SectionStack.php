<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** The sections that are open at a point of a template, and the names under which references reach them. */
final class SectionStack
{
    /** @var list<OpenSection> */
    private array $sections = [];
    /** @var array<int> how many open repeated sections have this name */
    private array $names = [];
    private int $repeated = 0;

    public function push(OpenSection $section): void
    {
        $this->sections[] = $section;
        if ($section->isRepeated()) {
            ++$this->repeated;
            $this->names[$section->name] = ($this->names[$section->name] ?? 0) + 1;
        }
    }

    public function pop(): void
    {
        $section = array_pop($this->sections);
        if ($section?->isRepeated()) {
            --$this->repeated;
            if (--$this->names[$section->name] === 0) {
                unset($this->names[$section->name]);
            }
        }
    }

    public function innermost(): ?OpenSection
    {
        return $this->sections === [] ? null : $this->sections[array_key_last($this->sections)];
    }

    /** To go on after a forgotten closing tag: ends the section that this tag was meant for, if there is one. */
    public function closeOuter(Keyword $closing): void
    {
        $isMeant = static fn (OpenSection $open): bool => $open->tag->keyword->closedBy() === $closing;
        if (!array_any($this->sections, $isMeant)) {
            return;
        }
        while (!$isMeant($this->innermost())) {
            $this->pop();
        }
        $this->pop();
    }

    /** Can a reference name this section? The empty name is the innermost one's. */
    public function knows(string $name): bool
    {
        return $name === '' ? $this->repeated > 0 : isset($this->names[$name]);
    }

    /** @return list<string> every name that knows() accepts */
    public function names(): array
    {
        $names = array_map(strval(...), array_keys($this->names));

        return $this->repeated === 0 ? [] : array_values(array_unique(['', ...$names]));
    }

    /** @return list<OpenSection> the repeated sections of this name, which is not empty */
    public function named(string $name): array
    {
        if ($name === '' || !isset($this->names[$name])) {
            return [];
        }

        return array_values(array_filter($this->sections, static fn (OpenSection $open): bool => $open->name === $name));
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

<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** What the scanner found in a file and in everything that it includes. */
final class Scan
{
    /** @var array<string, Fault> by key, in the order in which the engine comes by */
    public array $faults = [];
    /** @var list<Node> the tags of this file in their order; a tree of objects, very deep, would be more than PHP can free */
    private array $nodes = [];
    /** @var list<Hint> of this file alone */
    public array $hints = [];
    /** @var list<IncludedFile> of this file alone */
    public array $includes = [];
    /** @var array<string, true> the names of all files that are included, at any depth */
    public array $reached = [];
    /** How often the engine opens a file for this one, itself included. */
    public int $visits = 1;
    /** A file includes itself, directly or through others; what is found then depends on where one starts. */
    public bool $circular = false;
    /** @var array<string, true> included names that only the engine may open: wrappers, pipes, devices */
    public array $opaque = [];
    /** References whose outcome only the data of a repeated section decides. */
    public int $sectionReferences = 0;

    public function __construct(public readonly Source $source)
    {
    }

    public function addNode(Tag $tag): Node
    {
        $node = $this->nodes[] = new Node($this->source, $tag, count($this->nodes));
        $node->end = $node->at + 1;

        return $node;
    }

    /** What is read from now on is no part of this section. */
    public function end(Node $section): void
    {
        $section->end = count($this->nodes);
    }

    /** @return \Generator<Node> the tags in a section, or in the whole file; those in sections within are the sections' */
    public function nodes(?Node $section = null): \Generator
    {
        $end = $section->end ?? count($this->nodes);
        for ($at = $section === null ? 0 : $section->at + 1; $at < $end; $at = $this->nodes[$at]->end) {
            yield $this->nodes[$at];
        }
    }

    public function add(Fault $fault): void
    {
        $this->faults[$fault->key()] ??= $fault;
    }

    public function include(IncludedFile $file, ?self $scan, bool $live): void
    {
        $this->includes[] = $file;
        $this->reached[$file->name] = true;
        if ($scan === null) {
            return;
        }
        foreach ($scan->faults as $fault) {
            $this->add($live ? $fault : $fault->whereNothingIsRendered());
        }
        $this->reached += $scan->reached;
        $this->visits = min($this->visits + $scan->visits, PHP_INT_MAX >> 1);
        $this->circular = $this->circular || $scan->circular;
        $this->opaque += $scan->opaque;
    }

    /** What template() says about this file when it is called without data; null when it accepts it. */
    public function firstFaultWithoutData(): ?Fault
    {
        $certain = array_filter($this->faults, static fn (Fault $fault): bool => !$fault->needsData);

        return array_find($certain, static fn (Fault $fault): bool => !$fault->atRendering)
            ?? array_find($certain, static fn (Fault $fault): bool => true);
    }
}

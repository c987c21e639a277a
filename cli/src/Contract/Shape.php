<?php

declare(strict_types=1);

namespace TemplateCli\Contract;

/** What templates ask of one value of the data, and of what is in it. */
final class Shape
{
    /** @var array<self> by key */
    public array $keys = [];
    /** Each element, when a repeated section goes over the value. */
    public ?self $element = null;
    /** @var array<string, Usage> */
    public array $usages = [];
    /** An "!optional" tag says what is shown without it. */
    public bool $mayBeMissing = false;

    public function add(Usage $usage): void
    {
        $this->usages[$usage->key()] ??= $usage;
    }

    /** @param list<string> $path */
    public function at(array $path): self
    {
        $shape = $this;
        foreach ($path as $key) {
            $shape = $shape->keys[$key] ??= new self();
        }

        return $shape;
    }

    public function has(UseKind ...$kinds): bool
    {
        return array_any($this->usages, static fn (Usage $usage): bool => in_array($usage->kind, $kinds, true));
    }

    /** Does a tag escape it at the top level? */
    public function needsText(): bool
    {
        return array_any($this->usages, static fn (Usage $usage): bool => $usage->needsText);
    }

    /** Is it missed when it is not there: itself, or something in it? */
    public function isRequired(): bool
    {
        $isMissed = fn (Usage $usage): bool => $usage->isRequired()
            && !($this->mayBeMissing && $usage->kind === UseKind::Section);

        return array_any($this->usages, $isMissed)
            || array_any($this->keys, static fn (self $shape): bool => $shape->isRequired());
    }

    /** Every use depends on a condition, so that something else may stand in its place. */
    public function isOnlyConditional(): bool
    {
        return array_all($this->usages, static fn (Usage $usage): bool => $usage->isConditional
                || in_array($usage->kind, [UseKind::Condition, UseKind::Comparison], true))
            && array_all($this->keys, static fn (self $shape): bool => $shape->isOnlyConditional());
    }
}

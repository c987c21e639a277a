<?php

declare(strict_types=1);

namespace TemplateCli\Check;

use TemplateCli\Language\Node;
use TemplateCli\Language\Place;

/** Collects what is found; of the same mistake in thousands of rows, only the first ones in full. */
final class Problems
{
    private const int MOST_OF_A_KIND = 20;

    /** @var list<Problem> */
    public array $all = [];
    /** @var array<string, array{int, Problem}> by tag and rule: how many there are, and the last one that was kept */
    private array $kinds = [];

    /** @param list<int|string> $path */
    public function add(Node $node, Rule $rule, array $path, string $message, ?\Closure $note = null): void
    {
        $kind = "{$node->id()}\0$rule->value";
        [$count, $last] = $this->kinds[$kind] ?? [0, null];
        if ($last !== null && $last->path === implode('::', $path)) {
            return; // a value of the top level, met again in each element of a section
        }
        if ($count >= self::MOST_OF_A_KIND) {
            ++$last->more;
        } else {
            $last = new Problem($node->place(), $rule, implode('::', $path), $message, $note === null ? '' : $note());
            $this->all[] = $last;
        }
        $this->kinds[$kind] = [$count + 1, $last];
    }

    /** Faults are told once, whichever way leads to them. */
    public function addFault(Place $place, string $message, string $note = '', Rule $rule = Rule::Fault): void
    {
        $kind = "$place\0$message";
        if (!isset($this->kinds[$kind])) {
            $fault = new Problem($place, $rule, '', $message, $note);
            $this->all[] = $fault;
            $this->kinds[$kind] = [1, $fault];
        }
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Check;

use TemplateCli\Contract\Shape;
use TemplateCli\Language\Place;

/** Finds data that no tag asks for; of the elements of a list, what the first of them has. */
final class Unused
{
    /** @var array<string, true> paths with the keys of elements left out */
    private array $seen = [];

    public function __construct(private readonly Problems $problems, private readonly string $template)
    {
    }

    /**
     * @param array<mixed> $value
     * @param list<int|string> $path
     */
    public function in(array $value, Shape $shape, array $path = [], string $seenAs = ''): void
    {
        foreach ($value as $key => $inner) {
            $name = $shape->element !== null && !isset($shape->keys[$key]) ? '*' : (string) $key;
            $asks = $shape->keys[$key] ?? $shape->element;
            if ($key === 'num' && $shape->element !== null && is_array($inner) && !isset($shape->keys[$key])) {
                $this->in($inner, $shape, [...$path, $key], $seenAs);
            } elseif ($asks === null && $key !== 'visible') {
                $this->tell([...$path, $key], "$seenAs::$name");
            } elseif (is_array($inner) && ($asks->keys ?? []) + [$asks?->element] !== [null]) {
                $this->in($inner, $asks, [...$path, $key], "$seenAs::$name");
            }
        }
    }

    /** @param list<int|string> $path */
    private function tell(array $path, string $seenAs): void
    {
        if (!isset($this->seen[$seenAs])) {
            $this->seen[$seenAs] = true;
            $place = new Place($this->template);
            $this->problems->all[] = new Problem($place, Rule::Unused, implode('::', $path), 'no tag asks for it');
        }
    }
}

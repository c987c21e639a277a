<?php

declare(strict_types=1);

namespace TemplateCli\Lint;

use TemplateCli\Language\Files;
use TemplateCli\Language\Scan;

/** Which repeated sections can be open around a file, because others include it inside of them. */
final class SectionsAround
{
    /** @var array<string, array<string>> names by resolved path */
    private array $names = [];

    /** @param array<string, Scan> $scans by name */
    public function __construct(array $scans)
    {
        do {
            $before = $this->names;
            foreach ($scans as $name => $scan) {
                foreach ($scan->includes as $include) {
                    $this->add($include->name, [...$include->sections, ...$this->of($name)]);
                }
            }
        } while ($this->names !== $before);
    }

    public function has(string $file, string $section): bool
    {
        return in_array($section, $this->of($file), true);
    }

    /** @return array<string> */
    private function of(string $file): array
    {
        return $this->names[Files::resolve($file) ?? $file] ?? [];
    }

    /** @param list<string> $names */
    private function add(string $file, array $names): void
    {
        $this->names[Files::resolve($file) ?? $file] = array_values(array_unique([...$this->of($file), ...$names]));
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/**
 * Finds the faults of template files, with their places, in the order in which the engine meets them.
 *
 * A file that was scanned once is not scanned again when it is included from several places, so that files which
 * include the next one twice, thirty levels deep, cost thirty scans.
 */
final class Scanner
{
    /** @var array<string, Scan> by name */
    private array $scans = [];

    private readonly Slot $data;

    /** @param array<mixed>|Slot $data where include tags may find the name of their file */
    public function __construct(array|Slot $data = [])
    {
        $this->data = is_array($data) ? Slot::top($data, isDecoded: $data === []) : $data;
    }

    /** @param list<string> $chain the names of the files that lead here, the outermost first */
    public function scanFile(string $name, array $chain = []): ?Scan
    {
        $known = $this->scans[$name] ?? null;
        if ($known !== null && array_intersect_key($known->reached, array_flip($chain)) === []) {
            return $known;
        }
        $text = Files::isOpaque($name) ? null : Files::read($name);
        if ($text === null) {
            return null;
        }
        $scan = $this->scan(new Source($name, $text), $chain);
        if (!$scan->circular) {
            $this->scans[$name] = $scan;
        }

        return $scan;
    }

    /** Scans a text that is in no file; its name stands in the messages. */
    public function scanText(string $text, ?string $name = null): Scan
    {
        return $this->scan(new Source($name ?? $text, $text), []);
    }

    /** @param list<string> $chain */
    private function scan(Source $source, array $chain): Scan
    {
        return new Walk($source, [...$chain, $source->name], $this, $this->data)->run();
    }
}

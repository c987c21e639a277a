<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** A template text that can tell on which line and in which column a byte stands (both from 1). */
final class Source
{
    /** @var list<int> offsets of the first byte of each line */
    private ?array $lines = null;

    public function __construct(public readonly string $name, public readonly string $text)
    {
    }

    /** @return array{int, int} */
    public function position(int $offset): array
    {
        $lines = $this->lines ??= $this->findLines();
        [$low, $high] = [0, count($lines) - 1];
        while ($low < $high) {
            $middle = intdiv($low + $high + 1, 2);
            [$low, $high] = $lines[$middle] <= $offset ? [$middle, $high] : [$low, $middle - 1];
        }

        return [$low + 1, $this->columns(substr($this->text, $lines[$low], $offset - $lines[$low])) + 1];
    }

    /** Columns are characters, as editors count them, where the line is UTF-8, and bytes elsewhere. */
    private function columns(string $before): int
    {
        if (preg_match('//u', $before) !== 1) {
            return strlen($before);
        }

        return strlen($before) - (int) preg_match_all('/[\x80-\xBF]/', $before);
    }

    /** @return list<int> */
    private function findLines(): array
    {
        $lines = [0];
        for ($at = 0; ($at = strpos($this->text, "\n", $at)) !== false;) {
            $lines[] = ++$at;
        }

        return $lines;
    }
}

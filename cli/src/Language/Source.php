<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** A template text that can tell on which line and in which column a byte stands (both from 1). */
final class Source
{
    private const int STEP = 1000;

    /** @var list<int> offsets of the first byte of each line */
    private ?array $lines = null;
    private ?int $countedLine = null;
    /** @var list<int> characters before each step of the line */
    private array $counts = [];
    private bool $isUtf8 = true;

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

        return [$low + 1, $this->column($low, $offset - $lines[$low])];
    }

    /**
     * Columns are characters, as editors count them, where the line is UTF-8, and bytes elsewhere. A page can be one
     * long line with a fault in every tag; so the characters up to every thousandth byte are counted once.
     */
    private function column(int $line, int $offset): int
    {
        if ($this->countedLine !== $line) {
            $end = $this->lines[$line + 1] ?? strlen($this->text);
            $text = substr($this->text, $this->lines[$line], $end - $this->lines[$line]);
            $this->countedLine = $line;
            $this->counts = [0];
            $this->isUtf8 = preg_match('//u', $text) === 1;
            foreach (str_split($text, self::STEP) as $step => $piece) {
                $this->counts[] = $this->counts[$step] + $this->characters($piece);
            }
        }
        $step = intdiv($offset, self::STEP);
        $rest = substr($this->text, $this->lines[$line] + $step * self::STEP, $offset % self::STEP);

        return $this->counts[$step] + $this->characters($rest) + 1;
    }

    private function characters(string $bytes): int
    {
        return strlen($bytes) - ($this->isUtf8 ? (int) preg_match_all('/[\x80-\xBF]/', $bytes) : 0);
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

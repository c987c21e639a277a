<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

/** Some rows that are sent to a worker in one go. */
final class Block
{
    private const int MOST_ROWS = 500;
    private const int MOST_BYTES = 1 << 18;

    /** @var list<string> */
    public array $rows = [];
    private int $bytes = 0;

    public function __construct(public readonly int $firstLine)
    {
    }

    public function add(string $row): void
    {
        $this->rows[] = $row;
        $this->bytes += strlen($row);
    }

    public function isFull(): bool
    {
        return count($this->rows) >= self::MOST_ROWS || $this->bytes >= self::MOST_BYTES;
    }
}

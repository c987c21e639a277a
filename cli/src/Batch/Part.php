<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\UsageError;

/**
 * A share of the rows, told by bytes: all lines that begin in it. So whoever renders a part finds it without reading the
 * rows before it, and the parts together have each row once.
 */
final readonly class Part
{
    public function __construct(public int $index, public int $count)
    {
    }

    public static function parse(string $text): self
    {
        if (preg_match('~^([1-9]\d{0,8})/([1-9]\d{0,8})$~D', $text, $match) !== 1 || (int) $match[1] > (int) $match[2]) {
            throw new UsageError("--part takes a number and how many parts there are, such as 3/8, not \"$text\".");
        }

        return new self((int) $match[1], (int) $match[2]);
    }

    public function __toString(): string
    {
        return "$this->index/$this->count";
    }

    /**
     * Where the part's first line begins and where its last one ends.
     *
     * @param resource $stream the rows
     *
     * @return array{int, int}
     */
    public function bounds(mixed $stream, int $size): array
    {
        return [
            self::lineFrom($stream, self::share($size, $this->index - 1, $this->count)),
            self::lineFrom($stream, self::share($size, $this->index, $this->count)),
        ];
    }

    /** $size * $index / $count, which for large files could pass what an integer holds half-way. */
    private static function share(int $size, int $index, int $count): int
    {
        return intdiv($size, $count) * $index + intdiv($size % $count * $index, $count);
    }

    /** @param resource $stream */
    private static function lineFrom(mixed $stream, int $at): int
    {
        if ($at === 0) {
            return 0;
        }
        // From the byte before, which is a line feed where a line begins right here.
        fseek($stream, $at - 1);
        fgets($stream);

        return ftell($stream);
    }
}

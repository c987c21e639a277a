<?php

declare(strict_types=1);

namespace Bench\engines;

use Bench\Engine;

use function template;

/**
 * String templates of one kind and of any size, to see how fast the extension reads a template; and one copy of the
 * same text, to see how fast that could be at all.
 */
final class Text implements Engine
{
    private const LINE = "Plain text as it stands in any page, without a tag.\n";

    private readonly string $text;
    private readonly bool $isCopied;

    public function __construct(string $kind, int $size)
    {
        $this->isCopied = $kind === 'copy of plain';
        $this->text = match ($kind) {
            'plain', 'copy of plain' => \str_pad('', $size, self::LINE),
            'tags' => \str_repeat('{name}', $size),
        };
    }

    public function render(): string
    {
        return $this->isCopied ? \substr($this->text, 1) : template($this->text, ['name' => 'value'], true);
    }
}

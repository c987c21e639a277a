<?php

declare(strict_types=1);

namespace Bench\engines;

use Bench\Engine;

use function template;

/** The extension over string templates of one kind and of any size, to see how fast a template is read. */
final class Text implements Engine
{
    private readonly string $text;

    public function __construct(string $kind, int $size)
    {
        $this->text = match ($kind) {
            'plain' => \substr(\str_repeat("Plain text as it stands in any page, without a tag.\n", \intdiv($size, 50) + 1), 0, $size),
            'tags' => \str_repeat('{name}', $size),
        };
    }

    public function render(): string
    {
        return template($this->text, ['name' => 'value'], true);
    }
}

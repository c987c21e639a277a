<?php

declare(strict_types=1);

namespace TemplateCli\Contract;

use TemplateCli\Language\Place;

/** One tag that uses a value. */
final readonly class Usage
{
    /** @param list<string> $alternatives the other references of the tag */
    public function __construct(
        public UseKind $kind,
        public Place $place,
        /** It stands in a conditional section, or more precisely: in one within the section that the value comes from. */
        public bool $isConditional = false,
        public bool $hasDefault = false,
        public array $alternatives = [],
        /** The escaping function, or the text that is compared with. */
        public string $detail = '',
        /** Escaped at the top level, where only texts are printed. */
        public bool $needsText = false,
    ) {
    }

    /** The value is missed when it is not there. */
    public function isRequired(): bool
    {
        $isPrinted = in_array($this->kind, [UseKind::Text, UseKind::Escaped, UseKind::Section], true);

        return $isPrinted && !$this->isConditional && !$this->hasDefault && $this->alternatives === [];
    }

    public function key(): string
    {
        return "{$this->kind->value} $this->place $this->detail";
    }

    public function describe(): string
    {
        $text = match ($this->kind) {
            UseKind::Escaped => "text for $this->detail",
            UseKind::Comparison => "compared with \"$this->detail\"",
            UseKind::KeyComparison => "its key compared with \"$this->detail\"",
            UseKind::Section => 'repeated section',
            UseKind::Key => 'its key as text',
            UseKind::File => 'name of a file to include',
            default => $this->kind->value,
        };

        return $text . ($this->alternatives === [] ? '' : ', or ' . implode(', ', $this->alternatives))
            . ($this->hasDefault ? ', has a default' : '') . ($this->isConditional ? ', if shown' : '');
    }
}

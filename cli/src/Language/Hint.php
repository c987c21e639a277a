<?php

declare(strict_types=1);

namespace TemplateCli\Language;

final readonly class Hint
{
    public function __construct(
        public Place $place,
        public HintKind $kind,
        public string $message,
        /** For an unknown section: its name, empty for "any"; what includes this file may have it open. */
        public string $section = '',
        /** @var list<string> for a raw variable: its references */
        public array $references = [],
    ) {
    }
}

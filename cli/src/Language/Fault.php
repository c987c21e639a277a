<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** Something for which the engine refuses a template. */
final readonly class Fault
{
    public function __construct(
        public Place $place,
        /** The engine's message without its " in FILE". */
        public string $message,
        /** What helps to find the cause; not the engine's. */
        public string $note = '',
        /** The engine meets it while rendering, and then names the top-level file. */
        public bool $atRendering = false,
        /** Without user data the engine does not meet it. */
        public bool $needsData = false,
        /** Some data bring it up, others do not. */
        public bool $dependsOnData = false,
    ) {
    }

    /** The engine's whole message when $topFile is the file that template() was called with. */
    public function warning(string $topFile): string
    {
        return "$this->message in " . ($this->atRendering ? $topFile : $this->place->file);
    }

    /** The same fault in a file that is included where nothing is rendered without data. */
    public function whereNothingIsRendered(): self
    {
        return $this->atRendering
            ? new self($this->place, $this->message, $this->note, atRendering: true, needsData: true, dependsOnData: true)
            : $this;
    }

    public function key(): string
    {
        return "$this->place $this->message " . (int) $this->atRendering . (int) $this->needsData;
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/**
 * A value as it is stored in an array. PHP code cannot tell a PHP reference from its value; the engine's paths can: they
 * do not lead through one.
 */
final readonly class Slot
{
    /**
     * @param list<int|string> $path the keys that lead to it from the top of the data
     * @param ?array<string, true> $references those in the whole of the data; null when there can be none
     */
    public function __construct(
        public mixed $value,
        public array $path = [],
        public bool $isReference = false,
        private ?array $references = null,
    ) {
    }

    /**
     * The whole of the data.
     *
     * @param array<mixed> $data
     * @param bool $isDecoded from JSON, where there are no references
     */
    public static function top(array $data, bool $isDecoded = false): self
    {
        return new self($data, references: $isDecoded ? null : References::in($data));
    }

    /** What is iterated in place of an object: its properties. */
    public function withElements(array $elements): self
    {
        return new self($elements, $this->path, references: $this->references);
    }

    /** An array that is no PHP reference: what a path can go through. */
    public function isOpen(): bool
    {
        return !$this->isReference && is_array($this->value);
    }

    /** The element that is stored under this key of an open slot. */
    public function at(int|string $key): ?self
    {
        $value = $this->value;
        if (!array_key_exists($key, $value)) {
            return null;
        }
        $key = array_key_first([$key => 0]); // as the array has it: "5" is a number
        $path = [...$this->path, $key];
        $isReference = $this->references !== null && (isset($this->references[References::key($path)])
            || \ReflectionReference::fromArrayElement($value, $key) !== null);

        return new self($value[$key], $path, $isReference, $this->references);
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/**
 * Finds the PHP references in an array. Reflection does not tell of those that nothing shares any more, which a loop by
 * reference leaves behind, and no path of a template leads through them all the same. PHP's dump of a value does tell; it
 * is read along the value itself, whose keys and texts it holds as they are.
 */
final class References
{
    private int $at = 0;
    /** @var array<string, true> */
    private array $found = [];

    private function __construct(private readonly string $dump)
    {
    }

    /**
     * @param array<mixed> $data
     *
     * @return array<string, true> the paths of the elements that are references, as key() makes them
     */
    public static function in(array $data): array
    {
        ob_start();
        debug_zval_dump($data);
        $dump = (string) ob_get_clean();
        if (!str_contains($dump, 'reference refcount(')) {
            return [];
        }
        $references = new self($dump);
        $references->value($data, '', []);

        return $references->found;
    }

    /** @param list<int|string> $path */
    public static function key(array $path): string
    {
        return implode("\0", $path);
    }

    /** @param list<int|string> $path */
    private function value(mixed $value, string $indent, array $path): void
    {
        $line = substr($this->dump, $this->at, strcspn($this->dump, "\n", $this->at));
        if (str_starts_with($line, "{$indent}reference refcount(")) {
            $this->found[self::key($path)] = true;
            $this->at += strlen($line) + 1;
            $this->value($value, "$indent  ", $path);
            $this->at += strlen("$indent}\n");
        } elseif (is_string($value)) {
            $this->at += strlen($indent . 'string(' . strlen($value) . ') "') + strlen($value);
            $this->at += strcspn($this->dump, "\n", $this->at) + 1;
        } elseif (is_object($value)) {
            $this->at = (int) strpos($this->dump, "\n$indent}\n", $this->at) + strlen("\n$indent}\n");
        } else {
            $this->at += strlen($line) + 1;
            !is_array($value) || str_ends_with($line, '*RECURSION*') ?: $this->elements($value, "$indent  ", $path);
        }
    }

    /**
     * @param array<mixed> $array
     * @param list<int|string> $path
     */
    private function elements(array $array, string $indent, array $path): void
    {
        foreach ($array as $key => $value) {
            $this->at += strlen($indent . (is_int($key) ? "[$key]=>\n" : "[\"$key\"]=>\n"));
            $this->value($value, $indent, [...$path, $key]);
        }
        $this->at += strlen(substr($indent, 2) . "}\n");
    }
}

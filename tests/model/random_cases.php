<?php
/**
 * Random templates, files and user data for the comparison with the reference model.
 *
 * Templates come from the grammar, over a small vocabulary so that references hit and names clash;
 * a part of them is then damaged byte by byte. Data trees use the same vocabulary.
 */

declare(strict_types=1);

use Random\Engine\Mt19937;
use Random\Randomizer;

final class Text implements Stringable
{
    public function __construct(private string $text)
    {
    }

    public function __toString(): string
    {
        return $this->text;
    }
}

final class RandomCases
{
    private const KEYS = ['a', 'b', 'c', 'rows', 'list', 'map', 'num', 'visible', '0', '1', '5', '', 'x y', 'k:k', '*x', '-1', '05'];
    private const FREQUENT_KEYS = ['a', 'b', 'rows', 'list', '0', '1'];
    private const NAMES = ['r', 's', 'a', 'rows', 'n m'];
    private const FILES = ['one.tpl', 'two.tpl', 'three.tpl'];
    private const TEXTS = ['text', '', '0', '5', '-1', 'admin', "it's", 'one.tpl', 'two.tpl', '<b class="x">&amp;', "a\0b", "\xE9\xFF", "\u{e9}\u{20ac}",
        'a b+c/', '{a}', '{{', 'gone.tpl', '\\'];
    private const COMPARISONS = ['5', "'admin'", 'admin', '0', '1', '-1', '+5', '5x', "''", "it's", "x'0'y", ' 5', 'text', '18446744073709551615', 'a', 'rows'];

    private Randomizer $random;
    /** @var list<string> names of the sections around the place that is written, '' for unnamed ones */
    private array $open = [];
    /** @var list<mixed> what references in the data point to: kept, so that they stay references */
    private array $targets = [];

    public function __construct(int $seed)
    {
        $this->random = new Randomizer(new Mt19937($seed));
    }

    /** @return array{template: string, isText: bool, files: array<string, string>, data: array} */
    public function next(): array
    {
        $this->targets = [];
        $files = [];
        foreach (self::FILES as $name) {
            $files[$name] = $this->padded($this->chance(12) ? $this->damaged($this->body(2)) : $this->body(1));
        }
        $template = $this->body(3);
        $isText = $this->chance(2);
        if ($this->chance(5)) {
            $template = $this->damaged($template);
        }
        return [
            'template' => $isText ? $template : $this->padded($template),
            'isText' => $isText,
            'files' => $files,
            'data' => $this->data(3),
        ];
    }

    private function chance(int $oneIn): bool
    {
        return $this->random->getInt(1, $oneIn) === 1;
    }

    private function one(array $of): mixed
    {
        return $of[$this->random->getInt(0, count($of) - 1)];
    }

    private function body(int $depth): string
    {
        $out = '';
        for ($parts = $this->random->getInt($this->chance(10) ? 0 : 2, 3 + $depth); $parts > 0; $parts--) {
            $out .= $this->part($depth);
        }
        return $out;
    }

    private function part(int $depth): string
    {
        $kind = $this->random->getInt($depth > 0 ? 1 : 7, 20);
        return match (true) {
            $kind <= 3 => $this->section($depth),
            $kind <= 6 => $this->condition($depth),
            $kind <= 12 => '{' . $this->variable() . '}',
            $kind <= 15 => '{' . $this->one(['addslashes ', 'htmlentities ', 'htmlspecialchars ', 'rawurlencode ', 'addslashes'])
                . $this->reference() . '}',
            $kind === 16 && $this->chance(2) => '{include ' . $this->one([...self::FILES, 'gone.tpl', 'a', 'rows::b', ...self::FILES]) . '}',
            $kind <= 18 => $this->one(['{{', '}}', '}', '{ ', "{\n", "\0", '~', "\u{e9}"]),
            default => $this->one(['text ', "line\n", ',', '(']),
        };
    }

    private function section(int $depth): string
    {
        $reversed = $this->chance(4) ? 'r' : '';
        $name = $this->one(['', $this->one(self::NAMES) . ',', $this->one(self::NAMES) . ',', ',']);
        $inner = $this->open === [] ? ['rows', 'list', 'map'] : ['*', '*', '*::rows', '*::list', 'map', $this->one($this->open) . '::*'];
        $array = $this->chance(6) ? $this->reference() : $this->one($inner);
        $this->open[] = rtrim($name, ',');
        $body = $this->body($depth - 1);
        array_pop($this->open);
        return "{{$reversed}dynamic $name$array}$body{/{$reversed}dynamic}";
    }

    private function condition(int $depth): string
    {
        $negated = $this->chance(3) ? '!' : '';
        $comparison = $this->chance(3) ? ' ' . $this->one(self::COMPARISONS) : '';
        return "{{$negated}optional " . $this->reference() . "$comparison}" . $this->body($depth - 1) . '{/optional}';
    }

    private function variable(): string
    {
        $words = [];
        for ($count = $this->random->getInt(1, 3); $count > 0; $count--) {
            $words[] = $this->reference();
        }
        if ($this->chance(4)) {
            $words[] = $this->one(["'default'", "''", "'it's'", "'a 'b'", $this->chance(10) ? "'" : "' '"]);
        }
        return implode($this->one([' ', ' ', "\t", "\n "]), $words);
    }

    /** Mostly what the sections that are open make sense of, and sometimes what nothing does. */
    private function reference(): string
    {
        $name = $this->open === [] || $this->chance(6) ? $this->one(self::NAMES) : $this->one($this->open);
        $isRelative = !$this->chance($this->open === [] ? 12 : 3) === ($this->open !== []);
        $path = $this->path();
        if (!$isRelative) {
            return implode('::', $path);
        }
        $star = $this->one(['*', '*', '*', '.*', '[*]']);
        if ($star === '[*]' && !$this->chance(80) || $path === [''] || $this->chance(3)) {
            $path = [];
        }
        if ($star !== '.*' && $name !== '' && $this->chance(2)) {
            array_unshift($path, ...$this->chance(60) ? [$name, 'b'] : [$name], ...[$star]);
        } else {
            array_unshift($path, $star);
        }
        return implode($this->chance(300) ? ':::' : '::', $path);
    }

    /** @return list<string> */
    private function path(): array
    {
        $path = [];
        do {
            $path[] = $this->one($this->chance(3) ? self::KEYS : self::FREQUENT_KEYS);
        } while ($this->chance(3));
        return count($path) > 1 && !$this->chance(30) ? array_filter($path, fn (string $key) => $key !== '') : $path;
    }

    private function damaged(string $template): string
    {
        for ($changes = $this->random->getInt(1, 3); $changes > 0 && $template !== ''; $changes--) {
            $at = $this->random->getInt(0, strlen($template) - 1);
            $length = $this->random->getInt(0, 2);
            $template = substr($template, 0, $at)
                . $this->one(['', '', '{', '}', ':', '*', "'", ' ', ',', '[*]', '::', '/', "\0", '{/optional}', '{/dynamic}'])
                . substr($template, $at + $length);
        }
        return $template;
    }

    /** Puts text before some files, so that a chunk of the reader ends in the middle of the template. */
    private function padded(string $template): string
    {
        return $this->chance(4) ? str_repeat('-', 4092 - $this->random->getInt(0, min(4092, strlen($template)))) . $template : $template;
    }

    private function data(int $depth): array
    {
        $array = [];
        for ($count = $this->random->getInt($this->chance(6) ? 0 : 2, 4); $count > 0; $count--) {
            $key = $this->one($this->chance(3) ? self::KEYS : self::FREQUENT_KEYS);
            $value = $this->value($depth);
            if ($this->chance(8)) {
                $this->targets[] = &$value;
                $array[$key] = &$value;
            } else {
                $array[$key] = $value;
            }
            unset($value);
        }
        if ($depth === 3) {
            foreach (['a', 'b', 'c'] as $key) {
                $array[$key] ??= $this->one(self::TEXTS);
            }
            foreach (['rows', 'list', 'map'] as $key) {
                if (!$this->chance(4)) {
                    $array[$key] = $this->data(2);
                }
            }
        }
        return $array;
    }

    private function value(int $depth): mixed
    {
        $kind = $this->random->getInt(1, 20);
        return match (true) {
            $kind <= 8 && $depth > 0 => $this->data($depth - 1),
            $kind <= 13 => $this->one(self::TEXTS),
            $kind <= 15 => $this->one([0, 1, 5, -1, PHP_INT_MAX, 12]),
            $kind === 16 => $this->one([0.0, 5.0, 1.5e30]),
            $kind === 17 => $this->boolean(),
            $kind === 18 => null,
            $kind === 19 => new Text($this->one(self::TEXTS)),
            default => $this->one([
                new ArrayObject($depth > 0 ? $this->data($depth - 1) : []),
                (object) ['a' => 'property', 'k:' => 5, '5' => 'numeric', 'rows' => [1]],
            ]),
        };
    }

    /** A boolean that remembers the integer that it was made from, 0 or 1: conditions read it. */
    private function boolean(): bool
    {
        $value = $this->random->getInt(0, 1);
        settype($value, 'bool');
        return $value;
    }
}

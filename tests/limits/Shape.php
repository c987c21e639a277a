<?php
declare(strict_types=1);

/**
 * A call, told by how much there is of each thing in it. Its name says all of it, "variable count=1000
 * step=50 in=dynamic as=file": the tag that is repeated, then the sizes and choices that are not as usual.
 */
final class Shape
{
    public const TAGS = ['variable', 'key', 'addslashes', 'htmlentities', 'htmlspecialchars', 'rawurlencode', 'optional',
        '!optional', 'dynamic', 'rdynamic', 'include', 'text', 'brace', 'wrong'];

    /** The most of each thing, by itself: what a memory limit of 64 MB lets a program ask for. */
    public const SIZES = [
        'count' => 4 << 20, 'nest' => 1 << 20, 'text' => 16 << 20, 'name' => 8 << 20, 'step' => 16 << 20, 'steps' => 4 << 20,
        'also' => 4 << 20, 'default' => 16 << 20, 'compare' => 16 << 20, 'blank' => 16 << 20, 'rows' => 1 << 18,
        'key' => 8 << 20, 'value' => 16 << 20, 'files' => 4096, 'chain' => 2048, 'fan' => 30, 'tail' => 1 << 20, 'file' => 8 << 20,
        'parts' => 4 << 20, 'percent' => 8 << 20, 'calls' => 4096, 'fibers' => 512,
    ];
    private const USUAL = ['count' => 1, 'rows' => 1, 'step' => 1, 'files' => 1, 'value' => 1];

    /** The first of each is the usual one. */
    public const CHOICES = [
        'as' => ['text', 'file', 'stream', 'data', 'include'],
        // of files
        'packed' => ['no', 'yes'],
        'in' => ['nothing', 'dynamic', 'rdynamic', 'optional', 'hidden'],
        // whether what the tags name is in the data
        'found' => ['no', 'yes'],
        // what the path of a tag starts from
        'data' => ['plain', 'colliding', 'rebuilt'],
        // where user code comes in, which calls again or waits
        'when' => ['rendering', 'analysis'],
        'through' => ['string', 'handler', 'open', 'read', 'close'],
        // what it does when it has called often enough
        'then' => ['returns', 'throws', 'exits', 'dies'],
    ];

    /** The tags that a size belongs to, where those are not all, and what else it needs. */
    private const TAGS_WITH = [
        'also' => ['variable'], 'default' => ['variable'], 'blank' => ['variable', 'htmlspecialchars', 'optional'],
        'compare' => ['optional', '!optional'], 'file' => ['include'], 'parts' => ['include'], 'percent' => ['wrong'],
        'text' => ['text', 'optional', 'dynamic', 'brace', 'rdynamic'],
        'value' => ['variable', 'addslashes', 'htmlentities', 'htmlspecialchars', 'rawurlencode'],
    ];
    private const CHOICES_WITH = [
        'name' => ['in' => 'dynamic'], 'rows' => ['in' => 'dynamic'], 'key' => ['in' => 'dynamic'],
        'files' => ['as' => 'include'], 'chain' => ['as' => 'include'], 'fan' => ['as' => 'include'], 'tail' => ['as' => 'include'],
        'value' => ['found' => 'yes'],
    ];

    /** @param array<string, int|string> $parts what is not as usual */
    private function __construct(public readonly string $tag, private readonly array $parts)
    {
    }

    public static function named(string $name): self
    {
        $words = explode(' ', $name);
        $tag = array_shift($words);
        in_array($tag, self::TAGS, true) || throw new InvalidArgumentException("There is no tag \"$tag\".");
        $parts = [];
        foreach ($words as $word) {
            [$part, $value] = explode('=', $word, 2) + [1 => ''];
            isset(self::SIZES[$part]) || in_array($value, self::CHOICES[$part] ?? [], true)
                || throw new InvalidArgumentException("There is no \"$word\" in a call.");
            $parts[$part] = isset(self::SIZES[$part]) ? (int) $value : $value;
        }
        return new self($tag, $parts);
    }

    public function name(): string
    {
        $name = $this->tag;
        foreach ($this->parts as $part => $value) {
            $name .= $value === (self::CHOICES[$part][0] ?? null) ? '' : " $part=$value";
        }
        return $name;
    }

    public function size(string $of): int
    {
        return $this->parts[$of] ?? self::USUAL[$of] ?? 0;
    }

    public function choice(string $of): string
    {
        return $this->parts[$of] ?? self::CHOICES[$of][0];
    }

    /**
     * A call that has these sizes, or as much of them as fits into $most bytes. The rest, and which of
     * them gives way, is chosen by $choose, which is given a number and returns one from 0 to below it.
     *
     * @param array<string, int> $sizes
     */
    public static function chosen(callable $choose, array $sizes, int $most = 16 << 20, array $choices = []): self
    {
        $pick = fn (array $of): string => $of[$choose(count($of))];
        $tags = self::TAGS;
        foreach ($sizes as $size => $_) {
            // There are sizes that no tag has both of: it grows in one only.
            $tags = array_values(array_intersect($tags, self::TAGS_WITH[$size] ?? $tags)) ?: $tags;
            $choices += self::CHOICES_WITH[$size] ?? [];
        }
        $again = isset($sizes['calls']) || isset($sizes['fibers']);
        foreach (self::CHOICES as $choice => $values) {
            $choices += [$choice => $again || !in_array($choice, ['when', 'through', 'then'], true) ? $pick($values) : $values[0]];
        }
        $most >>= match (true) {
            // A file's name is in every message and in the list of those that are open.
            $choices['as'] === 'data' => 3,
            $choices['packed'] === 'yes' => 1,
            default => 0,
        };
        return self::fitting($pick($tags), $choices, $sizes, (bool) $choose(2), $most);
    }

    /** Halves the sizes until they fit: the largest, or the last that can be. */
    private static function fitting(string $tag, array $choices, array $left, bool $alike, int $most): self
    {
        while (($shape = new self($tag, $left + $choices))->bytes() > $most) {
            $able = array_filter($left, fn (int $size): bool => $size > 4);
            $able !== [] || throw new LogicException($shape->name() . ' is too large.');
            $left[$alike ? array_search(max($able), $able, true) : array_key_last($able)] >>= 1;
        }
        return $shape;
    }

    /** Of the template and what is made for it, about. */
    private function bytes(): float
    {
        $of = $this->size(...);
        // A key that collides is a long number.
        $step = $this->choice('data') === 'colliding' ? 10.0 : $of('step');
        $names = str_ends_with($this->tag, 'dynamic') ? 2 : 1;
        $depth = $of('nest') ?: ($this->choice('in') === 'nothing' ? 0 : 1);
        $unit = 30 + $names * $of('name') + $of('steps') * ($step + 2) + $of('step') + 4 * $of('also') + $of('default')
            + $of('compare') + $of('blank') + $of('text') + $of('file') + 2 * $of('parts') + $of('percent');
        return $of('count') * $unit + $depth * (20.0 + $of('name')) + $of('value') + $of('rows') * (40.0 + $of('key'))
            + max($of('chain'), $of('fan')) * (40.0 + $of('tail'))
            // what each of the calls says itself is the same text
            + ($of('calls') + $of('fibers')) * 100.0;
    }
}

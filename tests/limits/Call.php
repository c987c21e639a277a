<?php
declare(strict_types=1);

require_once __DIR__ . '/Shape.php';

/** What a Shape tells of, made: the template, its data and its files, and the calls. */
final class Call
{
    public static ?self $made = null;
    private string $body;
    private string $template;
    private string $folder;
    private array $data;
    private int $calls = 0, $names = 0;
    private array $fibers = [];

    public function __construct(public readonly Shape $shape)
    {
        self::$made = $this;
        $this->folder = sys_get_temp_dir() . '/template-call-' . getmypid();
        @mkdir($this->folder);
        register_shutdown_function($this->clear(...));
        $this->data = $this->data();
        $body = $this->repeated();
        if ($shape->choice('as') === 'stream' || !in_array($shape->choice('through'), ['string', 'handler'], true)) {
            Made::register();
        }
        if ($this->calls() > 0) {
            $body .= match (true) {
                !in_array($shape->choice('through'), ['string', 'handler'], true) => '{include next}',
                $shape->choice('when') === 'analysis' => '{o}',
                default => '{dynamic q,again}{q::*}{/dynamic}',
            };
        }
        $this->body = $this->nested($body);
        $this->template = $this->template();
    }

    private function template(): string
    {
        return match ($this->shape->choice('as')) {
            'text' => $this->body,
            'file' => $this->put('body', $this->body),
            'stream' => 'made://body',
            'data' => 'data:,' . rawurlencode($this->body),
            'include' => str_repeat('{include ' . $this->including() . '}', $this->shape->size('files')),
        };
    }

    public function clear(): void
    {
        array_map(unlink(...), glob("$this->folder/*"));
        @rmdir($this->folder);
    }

    private function calls(): int
    {
        return $this->shape->size('calls') + $this->shape->size('fibers');
    }

    /** Everything that tags name: in the data itself, and in each element of its rows. */
    private function data(): array
    {
        $found = $this->shape->choice('found') === 'yes';
        $value = str_repeat('"', $this->shape->size('value'));
        $leaf = $this->isSection() ? [$this->key(0) => $value] : $value;
        $names = $found ? ['t' => $leaf] : [];
        if ($found && $this->shape->size('steps') > 0) {
            for ($left = min($this->shape->size('steps'), 10000); $left > 0; $left--) {
                $leaf = [$this->step() => $leaf];
            }
            $names += $leaf;
        }
        if ($found && $this->shape->tag === 'include') {
            $names['f'] = $this->fileName();
        }
        $element = match ($this->shape->choice('data')) {
            'plain' => $names,
            'colliding' => array_fill_keys(array_map(fn (int $i): int => $i << 14, range(1, 10000)), 1),
            'rebuilt' => simplexml_load_string('<r>' . str_repeat('<a>1</a>', 50000) . '</r>'),
        };
        $rows = [];
        for ($i = $this->shape->size('rows'); $i > 0; $i--) {
            $rows[$this->key($i)] = $element;
        }
        $object = $this->shape->choice('through') === 'handler' ? [] : new Again();
        return $names + ['d' => $rows, 'v' => $value, 'o' => $object, 'again' => [$object]];
    }

    private function key(int $number): string
    {
        return str_repeat('k', $this->shape->size('key')) . ".$number";
    }

    private function step(): string
    {
        return match ($this->shape->choice('data')) {
            'plain' => str_repeat('s', $this->shape->size('step')),
            'colliding' => (string) (30000 << 14),
            'rebuilt' => '7',
        };
    }

    private function isSection(): bool
    {
        return str_ends_with($this->shape->tag, 'dynamic');
    }

    private function isInside(): bool
    {
        return str_ends_with($this->shape->choice('in'), 'dynamic');
    }

    private function section(int $number): string
    {
        return $this->shape->size('name') > 0 ? str_repeat('n', $this->shape->size('name')) . $number : '';
    }

    private function fileName(): string
    {
        return str_repeat('x/', $this->shape->size('parts')) . str_repeat('f', $this->shape->size('file') ?: 1);
    }

    private function reference(): string
    {
        $name = $this->section(0);
        $star = ($name === '' ? '' : "$name::") . ($this->shape->tag === 'key' ? '[*]' : '*');
        if ($this->shape->tag === 'key') {
            return $star;
        }
        $steps = $this->shape->size('steps') > 0
            ? substr(str_repeat('::' . $this->step(), $this->shape->size('steps')), 2)
            : ($this->shape->size('step') > 1 || $this->shape->choice('data') !== 'plain' ? $this->step() : 't');
        return $this->isInside() ? "$star::$steps" : $steps;
    }

    private function repeated(): string
    {
        $of = $this->shape->size(...);
        $tag = $this->shape->tag;
        $reference = $this->reference();
        $text = str_repeat('x', $of('text'));
        $blank = str_repeat(' ', max(1, $of('blank')));
        $other = $this->isInside() ? '*::u ' : 'u ';
        $default = $of('default') > 0 ? " '" . str_repeat('d', $of('default')) . "'" : '';
        $compare = $of('compare') > 0 ? ' ' . str_repeat('c', $of('compare')) : '';
        $unit = match ($tag) {
            'variable', 'key' => '{' . str_repeat($other, $of('also')) . $reference . $blank . "$default}",
            'optional', '!optional' => "{{$tag}$blank$reference$compare}$text{/optional}",
            'dynamic', 'rdynamic' => "{{$tag}$blank" . $this->section(1) . ",$reference}$text{/$tag}",
            'include' => '{include ' . ($this->shape->choice('found') === 'yes' ? 'f' : $this->fileName()) . '}',
            'text' => "$text{{ }} ",
            'brace' => "$text{{x{",
            'wrong' => '{a:::b ' . str_repeat('%n%9$s', intdiv($of('percent'), 6)) . '}',
            default => "{{$tag}$blank$reference}",
        };
        return str_repeat($unit, $of('count'));
    }

    private function nested(string $body): string
    {
        $in = $this->shape->choice('in');
        $depth = $this->shape->size('nest') ?: ($in === 'nothing' ? 0 : 1);
        $end = '{/' . ($in === 'hidden' ? 'optional' : $in) . '}';
        $begins = '';
        for ($i = 0; $i < $depth; $i++) {
            $begins .= match ($in) {
                'nothing', 'optional' => '{optional v}',
                'hidden' => '{optional nothing}',
                default => "{{$in} " . $this->section($i) . ',d}',
            };
        }
        return $begins . $body . str_repeat($in === 'nothing' ? '{/optional}' : $end, $depth);
    }

    public function make(): mixed
    {
        $fibers = $this->shape->size('fibers');
        if ($fibers === 0) {
            return $this->call();
        }
        for (; $fibers > 0; $fibers--) {
            $this->fibers[] = $fiber = new Fiber($this->call(...));
            $fiber->start();
        }
        foreach ($this->fibers as $number => $fiber) {
            $number % 2 === 0 && !$fiber->isTerminated() && $fiber->resume();
        }
        return 'fibers';
    }

    /** What user code does in the middle of a call. */
    public function again(): ?string
    {
        if (Fiber::getCurrent() !== null) {
            Fiber::suspend();
        }
        if ($this->calls++ < $this->shape->size('calls')) {
            return $this->call();
        }
        return match ($this->shape->choice('then')) {
            'returns' => 'x',
            'throws' => throw new Error('Thrown'),
            'exits' => exit(0),
            'dies' => eval('final class Again {}'),
        };
    }

    private function call(): ?string
    {
        // PHP does not open a name that is being opened.
        $this->data['next'] = 'made://again/' . ++$this->names;
        return template($this->template, $this->data, in_array($this->shape->choice('as'), ['text', 'include'], true));
    }

    /** What the file is opened by. */
    public function put(string $name, string $text): string
    {
        $packed = $this->shape->choice('packed') === 'yes';
        is_file("$this->folder/$name") || file_put_contents("$this->folder/$name", $packed ? gzencode($text, 1) : $text);
        return $this->opened($name);
    }

    private function opened(string $name): string
    {
        return ($this->shape->choice('packed') === 'yes' ? 'compress.zlib://' : '') . "$this->folder/$name";
    }

    /** The first of the files, of which each includes the next, or includes it twice. */
    private function including(): string
    {
        $last = max($this->shape->size('chain'), $this->shape->size('fan'));
        $tail = str_repeat(' ', $this->shape->size('tail'));
        for ($i = 0; $i < $last; $i++) {
            $this->put((string) $i, str_repeat('{include ' . $this->opened((string) ($i + 1)) . '}', $this->shape->size('fan') > 0 ? 2 : 1) . $tail);
        }
        $this->put((string) $last, $this->body . $tail);
        return $this->opened('0');
    }

    public function body(): string
    {
        return $this->body;
    }
}

/** A value whose text calls again, and a handler of errors that does. */
final class Again
{
    /** @var array<string, true> how they begin */
    public static array $warnings = [];

    public static function handle(int $level, string $message): bool
    {
        // Any message: also that calls are too deep inside of each other.
        if (Call::$made?->shape->choice('through') === 'handler') {
            // PHP switches a handler off while it runs.
            set_error_handler(self::handle(...));
            self::$warnings[substr($message, 0, 40)] = true;
            Call::$made->again();
        }
        self::$warnings[substr($message, 0, 40)] = true;
        return true;
    }

    public function __toString(): string
    {
        return Call::$made?->again() ?? '';
    }
}

/** Streams of the call's own text, that call again, and that never end. */
final class Made
{
    public $context;
    private string $name;
    private string $text;
    private int $at = 0;
    private bool $endless;

    /** Only where it is asked for: files are opened in another way when a program has wrappers. */
    public static function register(): void
    {
        in_array('made', stream_get_wrappers(), true) || stream_wrapper_register('made', self::class);
    }

    public function stream_open(string $path, string $mode, int $options, ?string &$opened): bool
    {
        $this->name = strtok(substr($path, strlen('made://')), '/');
        $this->endless = in_array($this->name, ['more', 'silent'], true);
        $this->text = match ($this->name) {
            'body' => Call::$made->body(),
            'more' => '{x}more{x}',
            'silent' => '',
            default => 'x',
        };
        $this->does('open');
        return true;
    }

    public function stream_read(int $count): string
    {
        $this->does('read');
        $piece = substr($this->text, $this->at, $count);
        $this->at += $this->endless ? 0 : strlen($piece);
        return $piece;
    }

    public function stream_eof(): bool
    {
        return !$this->endless && $this->at === strlen($this->text);
    }

    public function stream_close(): void
    {
        $this->does('close');
    }

    public function stream_stat(): array
    {
        return [];
    }

    private function does(string $what): void
    {
        $this->name === 'again' && Call::$made->shape->choice('through') === $what && Call::$made->again();
    }
}

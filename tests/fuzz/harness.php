<?php
/**
 * What the fuzzers do with one input: PHP code as nobody should write it, made from the input's
 * bytes. The fuzz targets (target.cpp) and replay.php call play().
 *
 * An input has parts with a byte 0x1E between them: options, user data, template, and any number of
 * files, which the template includes as 1, 2, …. Every sequence of bytes is an input. The options
 * and the user data are a notation of single letters, so that a changed byte makes another
 * meaningful input: see Script and Decoder.
 */

/** Everything of one input that user code can reach while a call runs. */
final class World
{
    /** @var string[] by the name that the template includes them with */
    public static array $files = [];
    public static string $template = '';
    /** PHP references in the user data, and objects: what hostile code changes. */
    public static array $references = [];
    public static array $objects = [];
    /** What streams and the error handler do. */
    public static string $onOpen = '', $onRead = '', $onClose = '', $onError = '';
    /** Bytes that a stream delivers at once. */
    public static int $piece = 8192;
    public static array $messages = [];
    /** Hostile acts left, so that every input comes to an end. */
    public static int $budget = 100;

    public static function reset(): void
    {
        self::$references = self::$objects = self::$messages = [];
        self::$piece = 8192;
        self::$budget = 100;
    }

    /** Does what the letters say, one by one. */
    public static function act(string $letters): void
    {
        foreach (str_split($letters) as $letter) {
            if (--self::$budget < 0) {
                return;
            }
            match ($letter) {
                't' => throw new DomainException('thrown'),
                'x' => exit(0),
                'f' => eval('final class World {}'),
                'm' => str_repeat('m', PHP_INT_MAX >> 16),
                'w' => trigger_error('warned', E_USER_WARNING),
                'r' => template(self::$template, ['re' => 'entered', 'rows' => self::$references], true),
                'y' => Fiber::getCurrent() && Fiber::suspend(),
                'l' => gc_collect_cycles(),
                'd' => self::$references = self::$objects = [],
                'k' => ini_set('default_charset', 'nonsense'),
                'e' => ini_set('default_charset', 'UTF-8'),
                default => self::change($letter),
            };
        }
    }

    private static function change(string $letter): void
    {
        foreach (self::$references as &$value) {
            $array = is_array($value);
            match ($letter) {
                's' => $value = 'a scalar',
                'n' => $value = null,
                'a' => $value = ['new' => 'array'],
                'o' => $value = (object) ['new' => 'object'],
                'u' => $array && array_shift($value),
                'p' => $array && array_pop($value),
                'g' => $array && $value = array_merge($value, array_fill(0, 20, 'grown')),
                'c' => $array && $value = [],
                'i' => $array && sort($value),
                default => null,
            };
        }
        foreach (self::$objects as $object) {
            self::changeObject($letter, $object);
        }
    }

    private static function changeObject(string $letter, object $object): void
    {
        if ($letter === 'U') {
            foreach (array_keys(get_object_vars($object)) as $name) {
                unset($object->$name);
            }
        } elseif ($letter === 'G' && !$object instanceof UnitEnum) {
            foreach (range(1, 20) as $number) {
                $object->{"grown$number"} = 'property';
            }
        } elseif ($letter === 'E' && $object instanceof ArrayObject) {
            $object->exchangeArray(['exchanged' => str_repeat('e', 30)]);
        }
    }
}

#[AllowDynamicProperties]
class Hostile
{
    public $declared = 'a declared property';
    public int $never;
    public $hooked = 'h' {
        get => $this->hooked . World::act($this->actions);
    }

    public function __construct(protected string $actions = '')
    {
    }

    public function __toString(): string
    {
        World::act($this->actions);
        return "<hostile & '$this->actions'>";
    }
}

final class Destroyed extends Hostile
{
    public function __destruct()
    {
        World::act($this->actions);
    }
}

enum Suit: string
{
    case Hearts = 'H';
}

/** Files that are parts of the input, and streams that misbehave. */
final class MemoryStream
{
    public $context;
    private string $content;

    public function stream_open(string $path, string $mode, int $options, ?string &$opened): bool
    {
        World::act(World::$onOpen);
        $name = basename($path);
        if (!isset(World::$files[$name])) {
            return false;
        }
        $this->content = World::$files[$name];
        return true;
    }

    public function stream_read(int $count): string
    {
        World::act(World::$onRead);
        $piece = substr($this->content, 0, min($count, World::$piece));
        $this->content = substr($this->content, strlen($piece));
        return $piece;
    }

    public function stream_eof(): bool
    {
        return $this->content === '';
    }

    public function stream_stat(): array
    {
        return [];
    }

    public function stream_close(): void
    {
        World::act(World::$onClose);
    }

    public function url_stat(): bool
    {
        return false;
    }
}

/** Takes a part of the input to pieces; never at a loss, whatever the bytes. */
class Scanner
{
    private int $at = 0;

    public function __construct(private string $text)
    {
    }

    protected function next(): ?string
    {
        return $this->text[$this->at++] ?? null;
    }

    protected function ahead(): ?string
    {
        return $this->text[$this->at] ?? null;
    }

    protected function until(string $end): string
    {
        $length = strcspn($this->text, $end, $this->at);
        $text = substr($this->text, $this->at, $length);
        $this->at += $length + 1;
        return $text;
    }
}

/** The options: how template() is called, and what the world around it does meanwhile. */
final class Script extends Scanner
{
    public bool $asFile = false, $inFiber = false, $resumed = false;

    public function __construct(string $text, bool $quietStreams)
    {
        parent::__construct($text);
        World::$onOpen = World::$onRead = World::$onClose = World::$onError = '';
        while (($letter = $this->next()) !== null) {
            match ($letter) {
                'F' => $this->asFile = true,
                'Y' => $this->inFiber = true,
                'R' => $this->resumed = true,
                'P' => World::$piece = 1 + ord($this->next() ?? ''),
                'O' => World::$onOpen = $this->until(';'),
                'S' => World::$onRead = $this->until(';'),
                'C' => World::$onClose = $this->until(';'),
                'E' => World::$onError = $this->until(';'),
                default => null,
            };
        }
        if ($quietStreams) {
            World::$onOpen = World::$onRead = World::$onClose = '';
        }
    }
}

/**
 * The user data: n t f null and truth, i…; d…; s…<1F> numbers and text, L…<1F> a long text,
 * a key=value… ] an array, & before a value makes it a PHP reference, @0 … @9 are references met
 * before (cycles included), o and a letter an object.
 */
final class Decoder extends Scanner
{
    private int $depth = 0;
    /** @var resource one for all, because its text is its number */
    private static $handle;

    public function value(): mixed
    {
        return match ($this->next()) {
            't' => true,
            'f' => false,
            'i' => (int) $this->until(';'),
            'd' => (float) $this->until(';'),
            's' => $this->until("\x1f"),
            'L' => str_repeat($this->until("\x1f"), 500),
            'a' => $this->members(),
            'o' => World::$objects[] = $this->object(),
            'h' => self::$handle ??= fopen('php://memory', 'r'),
            default => null,
        };
    }

    public function members(): array
    {
        $members = [];
        if (++$this->depth > 50) {
            return $members;
        }
        while (!in_array($this->ahead(), [null, ']'], true)) {
            $key = $this->until('=');
            if ($this->ahead() === '&') {
                $this->next();
                $reference = null;
                World::$references[] = &$reference;
                $reference = $this->value();
                $members[$key] = &$reference;
                unset($reference);
            } elseif ($this->ahead() === '@') {
                $this->next();
                $number = $this->next();
                if (isset(World::$references[$number])) {
                    $members[$key] = &World::$references[$number];
                }
            } else {
                $members[$key] = $this->value();
            }
        }
        $this->next();
        $this->depth--;
        return $members;
    }

    private function object(): object
    {
        return match ($this->next()) {
            'h' => $this->filled(new Hostile($this->until(';'))),
            'd' => $this->filled(new Destroyed($this->until(';'))),
            'a' => new ArrayObject($this->members()),
            'x' => new SplObjectStorage(),
            'f' => SplFixedArray::fromArray(array_values($this->members())),
            'l' => $this->lazy($this->until(';')),
            'c' => fn () => null,
            'e' => Suit::Hearts,
            'g' => (fn () => yield)(),
            'w' => new WeakMap(),
            'y' => new Exception('as text'),
            default => (object) $this->members(),
        };
    }

    private function filled(object $object): object
    {
        foreach ($this->members() as $name => $value) {
            try {
                $object->{"$name"} = $value;
            } catch (Error) {
                // no name for a property, or not for such a value
            }
        }
        return $object;
    }

    private function lazy(string $actions): object
    {
        return (new ReflectionClass(Hostile::class))->newLazyGhost(function (Hostile $object) use ($actions) {
            World::act($actions);
            $object->__construct($actions);
        });
    }
}

function play(string $input, string $target): void
{
    $parts = explode("\x1e", $input);
    World::$files = array_slice($parts, 3, null, true);
    World::$files = array_combine(array_map(fn ($i) => $i - 2, array_keys(World::$files)), World::$files);
    World::$template = $parts[2] ?? '';
    if ($target === 'modes') {
        compare_modes($parts);
    } else {
        World::reset();
        $script = new Script($parts[0], false);
        render($script, $parts[1] ?? '', $script->asFile);
    }
}

/** A string, a file, and a file that comes byte by byte: the same text, the same messages. */
function compare_modes(array $parts): void
{
    if (str_contains($parts[1] ?? '', World::$template) && World::$template !== '') {
        return; // data that names the text of the template: as a file's name it closes a circle
    }
    $seen = [];
    foreach (['text' => 8192, 'file' => 8192, 'slow file' => 1] as $mode => $piece) {
        World::reset();
        $script = new Script($parts[0], true);
        World::$piece = $piece;
        $seen[$mode] = [render($script, $parts[1] ?? '', $mode !== 'text'), World::$messages];
    }
    if ($seen['file'] !== $seen['slow file']) {
        fault('a stream that delivers single bytes makes a difference', $seen);
    }
    [$result, $messages] = $seen['text'];
    if ($result !== $seen['file'][0] || count($messages) !== count($seen['file'][1])) {
        fault('a string and a file differ', $seen);
    }
    foreach ($messages as $number => $message) {
        if (!same_message($message, $seen['file'][1][$number])) {
            fault('the messages of a string and of a file differ', $seen);
        }
    }
}

/** The name of a file stands at the end of a message, where a string template stands itself. */
function same_message(string $ofString, string $ofFile): bool
{
    if (!str_ends_with($ofFile, MAIN)) {
        return $ofString === $ofFile;
    }
    $common = substr($ofFile, 0, -strlen(MAIN));
    if (str_contains(World::$template, '%')) {
        return str_starts_with($ofString, $common);
    }
    return $ofString === $common . substr(World::$template, 0, strcspn(World::$template, "\0"));
}

/** A file name that no template can spell, so that it cannot include itself. */
const MAIN = "\x1emain";

function render(Script $script, string $data, bool $asFile): mixed
{
    World::$files[basename(MAIN)] = World::$template;
    ini_set('default_charset', 'UTF-8');
    set_error_handler(function (int $level, string $message): bool {
        World::$messages[] = $message;
        World::act(World::$onError);
        return true;
    });
    $name = $asFile ? MAIN : World::$template;
    $call = function () use ($name, $data, $asFile) {
        try {
            return template($name, (new Decoder($data))->members(), !$asFile);
        } catch (DomainException $exception) {
            return $exception->getMessage();
        } catch (Throwable $exception) {
            return get_class($exception);
        }
    };
    if (!$script->inFiber) {
        $result = $call();
    } else {
        $fiber = new Fiber($call);
        $fiber->start();
        while ($script->resumed && !$fiber->isTerminated()) {
            $fiber->resume();
        }
        $result = $fiber->isTerminated() ? $fiber->getReturn() : null;
    }
    restore_error_handler();
    return $result;
}

/** However the input ended, the next call is as good as ever. */
function check_next_call(): void
{
    // Destructors that write to static members while those are being destroyed leak in PHP itself.
    World::$budget = 0;
    set_error_handler(null);
    $page = '{a}{dynamic r,b}{r::[*]}{htmlspecialchars r::*::c}{/dynamic}{!optional d}!{/optional}';
    $result = template($page, ['a' => 'A', 'b' => [['c' => '<'], ['c' => 'x']]], true);
    if ($result !== 'A0&lt;1x!') {
        fault('the next call is wrong', $result);
    }
    // PHP does not look for cycles at its end, and they would pass for leaks.
    World::$references = World::$objects = World::$messages = [];
    gc_collect_cycles();
}

function fault(string $message, mixed $seen): never
{
    file_put_contents('php://stderr', "$message:\n" . var_export($seen, true) . "\n");
    function_exists('abort') ? abort() : exit(99);
}

stream_wrapper_unregister('file');
stream_wrapper_register('file', MemoryStream::class);
foreach (['http', 'ftp', 'https', 'ftps'] as $network) {
    in_array($network, stream_get_wrappers(), true) && stream_wrapper_unregister($network);
}
register_shutdown_function('check_next_call');

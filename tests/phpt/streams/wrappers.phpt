--TEST--
Templates from user stream wrappers: in pieces, slow, empty, throwing, lying about their end
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

/** Delivers what the test says, and notes what is asked of it. */
class Source
{
    public static array $log = [];
    public static Closure $read;
    public static ?Closure $open = null;
    public $context;
    public string $content = '';
    public bool $ended = false;

    public function stream_open(string $path, string $mode, int $options): bool
    {
        self::$log[] = "open $path $mode" . ($options & STREAM_REPORT_ERRORS ? ' reports' : '');
        $this->content = self::$open === null ? '' : (self::$open)($path);
        return true;
    }
    public function stream_read(int $count): string|false
    {
        return (self::$read)($this, $count);
    }
    public function stream_eof(): bool
    {
        return $this->ended;
    }
    public function stream_stat(): array
    {
        return [];
    }
    public function stream_close(): void
    {
        self::$log[] = 'close';
    }

    /** Hands out $length bytes. */
    public function some(int $length): string
    {
        $piece = substr($this->content, 0, $length);
        $this->content = substr($this->content, $length);
        $this->ended = $this->content === '';
        return $piece;
    }
}
stream_wrapper_register('source', 'Source');

$template = "a{{b}}{v} { {dynamic r,rows}{r::[*]}={r::*};{/dynamic}{optional v}{!optional x}{missing 'default'}{/optional}{/optional}{x" . "}}}";
$data = ['v' => 'value', 'rows' => ['k' => 1, 2]];
$expected = [template($template, $data, true)];

$ways = [
    'all at once' => fn (Source $source, int $count) => $source->some($count),
    'one byte at a time' => fn (Source $source) => $source->some(1),
    'in random pieces' => fn (Source $source) => $source->some(mt_rand(1, 7)),
    'nothing every second time' => function (Source $source) use (&$turn) {
        return ++$turn % 2 ? '' : $source->some(3);
    },
    'the end is told late' => function (Source $source) {
        $piece = $source->some(5);
        $source->ended = $piece === '';
        return $piece;
    },
];
mt_srand(1);
foreach ($ways as $how => $read) {
    Source::$open = fn () => $template;
    Source::$read = $read;
    Source::$log = [];
    echo $how, ': ', json_encode([outcome('source://t', $data, false) === $expected, Source::$log], JSON_UNESCAPED_SLASHES), "\n";
    // Included, with the file closed before the text behind it is read.
    echo json_encode(outcome('{include source://t}!', $data) === [$expected[0] . '!']), "\n";
}

// False is the end of a chunk, not of the file.
Source::$read = function (Source $source) use (&$turn) {
    return ++$turn % 3 === 0 ? false : $source->some(10);
};
echo 'false in between: ', json_encode(outcome('source://t', $data, false)[0] === $expected[0]), "\n";

// Warnings of a wrapper's, and PHP's about a wrapper that can do nothing but open, are no failures.
Source::$read = fn (Source $source) => trigger_error('slow disk', E_USER_WARNING) ? $source->some(5000) : '';
echo json_encode(outcome('source://t', $data, false) === [$expected[0], 'slow disk']), "\n";
stream_wrapper_register('mute', get_class(new class () {
    public $context;
    public function stream_open(): bool
    {
        return true;
    }
}));
$seen = outcome('mute://t', [], false);
echo json_encode([$seen[0], str_ends_with(end($seen), 'Assuming EOF')]), "\n";

// Exceptions: from opening, from reading, at the top level and in an include. At the top level the
// warning that the file was not opened is raised all the same.
$throw = fn () => throw new LogicException('from the wrapper');
foreach (['source://t' => false, 'a{include source://t}b' => true, 'a{include source://t}{a::}' => true] as $name => $isText) {
    [Source::$open, Source::$read] = [$throw, $ways['all at once']];
    error_clear_last();
    try {
        @template($name, $data, $isText);
    } catch (LogicException $exception) {
        echo json_encode([$exception->getMessage(), error_get_last()['message'] ?? null], JSON_UNESCAPED_SLASHES);
    }
    [Source::$open, Source::$read] = [fn () => '{v}', $throw];
    echo json_encode(outcome($name, $data, $isText), JSON_UNESCAPED_SLASHES), "\n";
}

// A read that renders, and one that throws only after some text was read.
Source::$open = fn () => $template;
Source::$read = fn (Source $source) => strtoupper(template($source->some(100) === '' ? '' : 'read {v}', ['v' => 'inside'], true));
echo json_encode(outcome('source://t', [], false)[0] !== null), "\n";
Source::$read = fn (Source $source) => strlen($source->content) > 50 ? $source->some(5) : throw new LogicException('in the middle');
echo json_encode(outcome('source://t', $data, false)), "\n";

?>
--EXPECT--
all at once: [true,["open source://t rb","close"]]
true
one byte at a time: [true,["open source://t rb","close"]]
true
in random pieces: [true,["open source://t rb","close"]]
true
nothing every second time: [true,["open source://t rb","close"]]
true
the end is told late: [true,["open source://t rb","close"]]
true
false in between: true
true
["",true]
["from the wrapper","Could not open file source://t"]["LogicException: from the wrapper"]
["from the wrapper",null]["LogicException: from the wrapper"]
["from the wrapper",null]["LogicException: from the wrapper"]
true
["LogicException: in the middle"]

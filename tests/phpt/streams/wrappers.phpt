--TEST--
Templates from user stream wrappers: in pieces, slow, empty, throwing, lying about their end
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$template = "a{{b}}{v} { {dynamic r,rows}{r::[*]}={r::*};{/dynamic}{optional v}{!optional x}{missing 'default'}{/optional}{/optional}{x" . "}}}";
$data = ['v' => 'value', 'rows' => ['k' => 1, 2]];
$expected = [template($template, $data, true)];
stream_wrapper_register('source', Source::class);
Source::$texts = ['t' => $template];

$asked = [];
/** Lets functions of the file and a length answer what is asked of it. */
function answering(Closure ...$answers): void
{
    Source::$answer = function (string $operation, Source $file, int $count) use ($answers): mixed {
        $GLOBALS['asked'][] = $operation;
        return isset($answers[$operation]) ? $answers[$operation]($file, $count) : null;
    };
}

mt_srand(1);
$ways = [
    'one byte at a time' => fn (Source $file) => $file->some(1),
    'in random pieces' => fn (Source $file) => $file->some(mt_rand(1, 7)),
    'nothing every second time' => function (Source $file) use (&$turn) {
        return ++$turn % 2 ? '' : $file->some(3);
    },
    // It is the end of a chunk, not of the file.
    'false every third time' => function (Source $file) use (&$turn) {
        return ++$turn % 3 ? $file->some(10) : false;
    },
    'all at once' => fn (Source $file, int $count) => $file->some($count),
];
foreach ($ways as $how => $read) {
    answering(read: $read);
    $seen = outcome('source://t', $data, false);
    // Included, with the file closed before the text behind it is read.
    echo $how, ': ', json_encode([$seen[0] === $expected[0], outcome('{include source://t}!', $data)[0] === "$expected[0]!"]), "\n";
}
echo 'left open: ', array_count_values($asked)['open'] - array_count_values($asked)['close'], "\n";
answering(eof: function (Source $file) use (&$last) {
    return [$last, $last = $file->rest][0] === '';
});
echo 'the end is told late: ', json_encode(outcome('source://t', $data, false) === $expected), "\n";

// Warnings of a wrapper's, and PHP's about a wrapper that can do nothing but open, are no failures.
answering(read: fn (Source $file) => trigger_error('slow disk', E_USER_WARNING) ? $file->some(5000) : '');
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
    answering(open: $throw);
    error_clear_last();
    try {
        @template($name, $data, $isText);
    } catch (LogicException $exception) {
        echo json_encode([$exception->getMessage(), error_get_last()['message'] ?? null], JSON_UNESCAPED_SLASHES);
    }
    answering(read: $throw);
    echo json_encode(outcome($name, $data, $isText), JSON_UNESCAPED_SLASHES), "\n";
}

// A read that renders, and one that throws only after some text was read.
answering(read: fn (Source $file) => template($file->some(100) === '' ? '' : 'read {v}', ['v' => 'inside'], true));
echo json_encode(outcome('source://t', [], false)), "\n";
answering(read: fn (Source $file) => strlen($file->rest) > 50 ? $file->some(5) : throw new LogicException('in the middle'));
echo json_encode(outcome('source://t', $data, false)), "\n";
--EXPECT--
one byte at a time: [true,true]
in random pieces: [true,true]
nothing every second time: [true,true]
false every third time: [true,true]
all at once: [true,true]
left open: 0
the end is told late: true
true
["",true]
["from the wrapper","Could not open file source://t"]["LogicException: from the wrapper"]
["from the wrapper",null]["LogicException: from the wrapper"]
["from the wrapper",null]["LogicException: from the wrapper"]
["read insideread inside"]
["LogicException: in the middle"]

--TEST--
Braces: escapes, literal braces, tags
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$data = ['x' => 'X', 'optional' => 'word'];

// Outside of tags: what is written and what it gives.
$plain = ['' => '', 'plain text' => 'plain text', 'a{{b}}c' => 'a{b}c', '{{{x}}}' => '{X}', '{{{{{x}}}}}' => '{{X}}', 'a}b' => 'a}b',
    'a}}}b' => 'a}}b', '}}}' => '}}', 'a{' => 'a{', 'a{{{' => 'a{{', 'a}' => 'a}', '{{}' => '{}', '{x}}}}' => 'X}}',
    "{ {{ {\t}}" => "{ { {\t}", "{\n{x}" => "{\nX", '{ }' => '{ }'];
$cases = [
    'NUL bytes in the text' => ["a\0b{x}\0", $data, "a\0bX\0"],
    'a keyword behind a form feed is a name' => ["{\foptional x}", $data, 'word'],
    'a tag over several lines' => ["{x\n\n}", $data, 'X'],

    'unterminated tag' => ['Hi {x', $data, 'Hi X'],
    'unterminated tag, missing' => ['Hi {name', $data, 'Hi {name}'],
    'unterminated tag, empty after escapes' => ['{{{x', $data, '{X'],
    'unterminated section' => ['{optional x', $data, null, 'Missing closing tag in <FILE>'],
    'unterminated closing tag' => ['{optional x}a{/optional', $data, 'a'],
    'unterminated include' => ['a{include nosuch.tpl', $data, 'a'],
    'unterminated escaping tag' => ['a{rawurlencode x', $data, 'aX'],

    // A "{" inside a tag turns itself and all that follows into "{".
    'inner brace' => ['{x{y}z', $data, '{x{{{{}'],
    'inner brace at the end' => ['{x{', $data, '{x{}'],
    'inner braces' => ['a{x{{x}}', $data, 'a{x{{{{{}'],
    'inner brace in a default' => ["{x '{'}{x}", $data, null,
        "Variable block bad parameter 'x '{{{{{{': could not find second ' as the last character in <FILE>"],
    'inner brace in a section' => ['{optional x{}a{/optional}', $data, null, 'Missing closing tag in <FILE>'],
    'inner brace in a closing tag' => ['{optional x}a{/optional{} {x}', $data, 'a'],
    'inner brace behind a name' => ['{addslashes x{} and more {', ['x' . str_repeat('{', 13) => 'thirteen'], 'thirteen'],
];
// After "{", these bytes alone make it literal; braces, quotes and stars have a meaning of their own.
foreach (array_map('chr', range(0, 255)) as $byte) {
    if (!str_contains("{}*'", $byte)) {
        $result = str_contains(" \t\r\n", $byte) ? "{{$byte}y}" : (str_contains("\v\f", $byte) ? 'trimmed tag' : 'tag');
        $cases['brace and byte ' . ord($byte)] = ["{{$byte}y}", ["{$byte}y" => 'tag', 'y' => 'trimmed tag'], $result];
    }
}
foreach ($plain as $template => $result) {
    $cases[$template] = [$template, $data, $result];
}
check($cases);
--EXPECT--
as expected

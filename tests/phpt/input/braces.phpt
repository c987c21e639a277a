--TEST--
Braces: escapes, literal braces, tags
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$data = ['x' => 'X', "\fx" => 'never', "\xFFx" => 'high', "\x01" => 'control', 'optional' => 'word'];

$cases = [
    'nothing' => ['', $data, ''],
    'no tag' => ['plain text', $data, 'plain text'],
    'escaped braces' => ['a{{b}}c', $data, 'a{b}c'],
    'a tag in escaped braces' => ['{{{x}}}', $data, '{X}'],
    'more of it' => ['{{{{{x}}}}}', $data, '{{X}}'],
    'a lone closing brace' => ['a}b', $data, 'a}b'],
    'three closing braces' => ['a}}}b', $data, 'a}}b'],
    'closing braces at the end' => ['}}}', $data, '}}'],
    'an opening brace at the end' => ['a{', $data, 'a{'],
    'three opening braces at the end' => ['a{{{', $data, 'a{{'],
    'a closing brace at the end' => ['a}', $data, 'a}'],
    'escape, then closing brace' => ['{{}', $data, '{}'],
    'tag, then closing braces' => ['{x}}}}', $data, 'X}}'],
    'opening brace, then escape' => ["{ {{ {\t}}", $data, "{ { {\t}"],
    'literal before a tag' => ["{\n{x}", $data, "{\nX"],
    'a brace, a blank, a brace' => ['{ }', $data, '{ }'],
    'NUL bytes in the text' => ["a\0b{x}\0", $data, "a\0bX\0"],
    'NUL opens a tag' => ["{\0}", $data, "{\0}"],
    'a high byte opens a tag' => ["{\xFFx}", $data, 'high'],
    'a control byte opens a tag' => ["{\x01}", $data, 'control'],
    'form feed opens a tag, and is trimmed' => ["{\fx}", $data, 'X'],
    'vertical tab opens a tag, and is trimmed' => ["{\vx}", $data, 'X'],
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
// After "{", these bytes alone make it literal.
foreach (range(0, 255) as $byte) {
    $literal = in_array(chr($byte), [' ', "\t", "\r", "\n"], true);
    if ($byte !== ord('{') && $byte !== ord('}') && $byte !== ord('*')) {
        $cases["brace and byte $byte"] = ['{' . chr($byte) . 'y}', [chr($byte) . 'y' => 'tag', 'y' => 'trimmed tag'],
            $literal ? '{' . chr($byte) . 'y}' : ($byte === 11 || $byte === 12 ? 'trimmed tag' : ($byte === 39 ? null : 'tag')),
            ...($byte === 39 ? ["Variable block bad parameter ''y': could not find second ' as the last character in <FILE>"] : [])];
    }
}
check($cases);
?>
--EXPECT--
text: as expected
file: as expected

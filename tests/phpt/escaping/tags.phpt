--TEST--
The four escaping tags, over constants and over elements
--INI--
default_charset=UTF-8
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$of = fn (mixed $value) => ['v' => $value, 'rows' => [['v' => $value]]];
$tag = fn (string $name) => '{' . "$name v}|{dynamic rows}{" . "$name *::v}{/dynamic}";
$markup = "a \"b\" & 'c' <d>";

check([
    'addslashes' => [$tag('addslashes'), $of("O'Neil \"x\" \\"), "O\\'Neil \\\"x\\\" \\\\|O\\'Neil \\\"x\\\" \\\\"],
    'htmlspecialchars' => [$tag('htmlspecialchars'), $of($markup), "a &quot;b&quot; &amp; 'c' &lt;d&gt;|a &quot;b&quot; &amp; 'c' &lt;d&gt;"],
    'htmlentities' => [$tag('htmlentities'), $of($markup), "a &quot;b&quot; &amp; 'c' &lt;d&gt;|a &quot;b&quot; &amp; 'c' &lt;d&gt;"],
    'rawurlencode' => [$tag('rawurlencode'), $of('a b+c/é~-_.'), 'a%20b%2Bc%2F%C3%A9~-_.|a%20b%2Bc%2F%C3%A9~-_.'],
    'entities are encoded again' => [$tag('htmlspecialchars'), $of('&amp;'), '&amp;amp;|&amp;amp;'],

    'UTF-8 as constant is one character, as element it is bytes' => [$tag('htmlentities'), $of('é€'), '&eacute;&euro;|&Atilde;&copy;&acirc;' . "\x82" . '&not;'],
    'only special characters: no difference' => [$tag('htmlspecialchars'), $of('é€'), 'é€|é€'],
    'invalid UTF-8 as constant is nothing' => [$tag('htmlspecialchars'), $of("a\xE9b"), "|a\xE9b"],
    'invalid UTF-8, other tags' => [$tag('addslashes') . $tag('rawurlencode'), $of("\xE9'"), "\xE9\\'|\xE9\\'%E9%27|%E9%27"],

    'NUL, addslashes' => [$tag('addslashes'), $of("a\0'b"), "a\\0\\'b|a"],
    'NUL, rawurlencode' => [$tag('rawurlencode'), $of("a\0b"), 'a%00b|a'],
    'NUL, htmlspecialchars' => [$tag('htmlspecialchars'), $of("<\0>"), '&lt;|&lt;'],
    'NUL, htmlentities' => [$tag('htmlentities'), $of("<\0>"), '&lt;|&lt;'],

    // Constants that are no texts vanish; elements print as PHP converts them.
    'integer' => [$tag('htmlspecialchars'), $of(5), '|5'],
    'null' => [$tag('addslashes'), $of(null), '|'],
    'array' => [$tag('htmlentities'), $of([1]), '|Array', 'Array to string conversion'],
    'object' => [$tag('htmlspecialchars'), $of(new Doing(fn () => '<b>')), '|&lt;b&gt;'],

    'missing' => ['[{addslashes x}{htmlentities x}{htmlspecialchars x}{rawurlencode x}]', [], '[]'],
    'missing in the element' => ['[{dynamic rows}{addslashes *::x}{htmlentities *::x}{htmlspecialchars r::*}{rawurlencode r::[*]}{/dynamic}]', $of(1), '[]'],
    'no alternatives, no default' => ["[{rawurlencode v 'd'}]", $of('x'), '[]'],
    'keys' => ['{dynamic m}{addslashes [*]}{htmlspecialchars [*]}{htmlentities [*]}{rawurlencode [*]}{/dynamic}', ['m' => ["<'\">" => 1]],
        "<\\'\\\">" . "&lt;'&quot;&gt;&lt;'&quot;&gt;%3C%27%22%3E"],
]);

// Every byte, and texts of many lengths in which special bytes are many, against PHP's own functions
// as ISO-8859-1.
mt_srand(1);
$bytes = array_map('chr', range(1, 255));
$texts = [...$bytes, implode('', $bytes)];
for ($length = 1; $length < 600; $length += mt_rand(1, 4)) {
    $texts[] = implode('', array_map(fn () => mt_rand(0, 2) ? "&<>'\"\\%/ "[mt_rand(0, 8)] : chr(mt_rand(1, 255)), range(1, $length)));
    $texts[] = str_repeat('plain', $length) . $bytes[mt_rand(0, 254)];
}
$own = [
    'addslashes' => 'addslashes',
    'rawurlencode' => 'rawurlencode',
    'htmlspecialchars' => fn ($text) => htmlspecialchars($text, ENT_COMPAT | ENT_HTML401, 'ISO-8859-1'),
    'htmlentities' => fn ($text) => htmlentities($text, ENT_COMPAT | ENT_HTML401, 'ISO-8859-1'),
];
foreach ($own as $name => $function) {
    $seen = template("{dynamic rows}{" . "$name *}\n{/dynamic}", ['rows' => $texts], true);
    var_dump($seen === implode('', array_map(fn ($text) => $function($text) . "\n", $texts)));
}
--EXPECT--
as expected
bool(true)
bool(true)
bool(true)
bool(true)

--TEST--
__toString is called only where a text is needed, may render, and may change what comes after it
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$calls = 0;
$thrower = new Doing(function () use (&$calls) {
    $calls++;
    throw new LogicException('from __toString');
});
$renderer = fn (string $template, array $data) => new Doing(fn () => '<' . template($template, $data, true) . '>');
$data = ['t' => $thrower];

// No text is asked for where none is needed.
echo json_encode(outcome('{optional t}shown{/optional}{optional t x}no{/optional}{addslashes t}{dynamic t}{/dynamic}[{include t}]', $data)), "\n";
echo $calls, "\n";

// One call inside of another one, at both stages, and in a section of the same name.
$inner = $renderer('{dynamic r,in}{r::*}{r::[*]}{/dynamic}{x}', ['in' => ['p', 'q'], 'x' => 'X']);
echo json_encode(outcome('{inner}{dynamic r,rows}[{r::*}{r::[*]}{htmlspecialchars r::*}]{/dynamic}', ['inner' => $inner, 'rows' => ['k' => $inner, 'l' => 'plain']])), "\n";
// The inner one fails: its warning comes, then its null becomes an empty text.
$faulty = $renderer('{/optional}', []);
echo json_encode(outcome('a{v}b{dynamic rows}{*}{/dynamic}', ['v' => $faulty, 'rows' => [$faulty]]), JSON_UNESCAPED_SLASHES), "\n";

/** A value that other rows see as well, and what is done to it by the first text that is made. */
function changing(string $template, mixed $shared, mixed $new): void
{
    $do = new Doing(function () use (&$shared, $new) { $shared = $new; });
    echo json_encode(outcome($template, ['shared' => &$shared, 'do' => $do, 'rows' => [['do' => $do, 'shared' => &$shared]]])), "\n";
}
// What was destroyed and made anew is read again.
changing('{shared}{do}{shared}', str_repeat('old', 10), str_repeat('new', 10));
changing('{dynamic rows}{*::shared}{*::do}{*::shared}{htmlspecialchars *::shared}{/dynamic}', str_repeat('old', 3), str_repeat('<n>', 3));
changing('{dynamic rows}{*::do}{optional *::shared}shown{/optional}{!optional *::shared}hidden{/optional}{/dynamic}', ['x'], 0);
--EXPECT--
["shown[]"]
0
["<p0q1X>[<p0q1X>k&lt;p0q1X&gt;][plainlplain]"]
["a<>b<>","Unexpected closing optional tag in {/optional}","Unexpected closing optional tag in {/optional}"]
["oldoldoldoldoldoldoldoldoldold!newnewnewnewnewnewnewnewnewnew"]
["oldoldold!<n><n><n>&lt;n&gt;&lt;n&gt;&lt;n&gt;"]
["!hidden"]

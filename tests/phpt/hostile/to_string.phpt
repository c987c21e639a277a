--TEST--
__toString that throws, renders, counts, or is called in every place that makes a text of a value
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

class Thrower
{
    public static int $calls = 0;
    public function __toString(): string
    {
        self::$calls++;
        throw new LogicException('from __toString');
    }
}
class Renderer
{
    public function __construct(private string $template, private array $data)
    {
    }
    public function __toString(): string
    {
        return '<' . template($this->template, $this->data, true) . '>';
    }
}

$thrower = new Thrower();
$data = ['t' => $thrower, 'rows' => [['n' => 'a'], ['n' => $thrower], ['n' => 'c']], 'list' => ['x', $thrower],
    'num' => [['num' => (object) ['p' => $thrower]]]];

// The exception reaches the caller alone: no warning, and nothing is called after it.
foreach (['{t}', "{missing t 'default'}", '{dynamic rows}{*::n}{/dynamic}', '{rdynamic rows}{*::n}{t}{/rdynamic}',
    '{dynamic rows}{*::missing t}{/dynamic}', '{dynamic list}{addslashes *}{/dynamic}', '{dynamic list}{rawurlencode *}{/dynamic}',
    '{dynamic list}{htmlentities *}{htmlspecialchars *}{/dynamic}', '{dynamic num}{dynamic *}{*}{/dynamic}{/dynamic}',
    '{optional missing}{t}{/optional}', '{dynamic missing}{t}{/dynamic}', '{t}{t}{a::}'] as $template) {
    Thrower::$calls = 0;
    echo json_encode([$template, ...outcome($template, $data), Thrower::$calls], JSON_UNESCAPED_SLASHES), "\n";
}

// No text is asked for where none is needed.
Thrower::$calls = 0;
echo json_encode(outcome('{optional t}shown{/optional}{optional t x}no{/optional}{addslashes t}{dynamic t}{/dynamic}[{include t}]', $data)), "\n";
echo Thrower::$calls, "\n";

// One call inside of another one, at both stages, and in a section of the same name.
$inner = new Renderer('{dynamic r,in}{r::*}{r::[*]}{/dynamic}{x}', ['in' => ['p', 'q'], 'x' => 'X']);
echo json_encode(outcome('{inner}{dynamic r,rows}[{r::*}{r::[*]}{htmlspecialchars r::*}]{/dynamic}', ['inner' => $inner, 'rows' => ['k' => $inner, 'l' => 'plain']])), "\n";
// The inner one fails: its warning comes, then its null becomes an empty text.
$faulty = new Renderer('{/optional}', []);
echo json_encode(outcome('a{v}b{dynamic rows}{*}{/dynamic}', ['v' => $faulty, 'rows' => [$faulty]]), JSON_UNESCAPED_SLASHES), "\n";
?>
--EXPECT--
["{t}","LogicException: from __toString",1]
["{missing t 'default'}","LogicException: from __toString",1]
["{dynamic rows}{*::n}{/dynamic}","LogicException: from __toString",1]
["{rdynamic rows}{*::n}{t}{/rdynamic}","LogicException: from __toString",1]
["{dynamic rows}{*::missing t}{/dynamic}","LogicException: from __toString",1]
["{dynamic list}{addslashes *}{/dynamic}","LogicException: from __toString",1]
["{dynamic list}{rawurlencode *}{/dynamic}","LogicException: from __toString",1]
["{dynamic list}{htmlentities *}{htmlspecialchars *}{/dynamic}","LogicException: from __toString",1]
["{dynamic num}{dynamic *}{*}{/dynamic}{/dynamic}","LogicException: from __toString",1]
["{optional missing}{t}{/optional}","LogicException: from __toString",1]
["{dynamic missing}{t}{/dynamic}","LogicException: from __toString",1]
["{t}{t}{a::}","LogicException: from __toString",1]
["shown[]"]
0
["<p0q1X>[<p0q1X>k&lt;p0q1X&gt;][plainlplain]"]
["a<>b<>","Unexpected closing optional tag in {/optional}","Unexpected closing optional tag in {/optional}"]

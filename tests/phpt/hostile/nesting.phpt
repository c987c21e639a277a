--TEST--
Nesting deeper than the stack allows is a warning, in a main program and in a fiber, for sections and files
--EXTENSIONS--
template
--INI--
zend.max_allowed_stack_size=4M
memory_limit=1G
--FILE--
<?php
require __DIR__ . '/../helper.inc';

// Files without end, each including the next, at no cost of open files and without user code.
$chain = ['v' => 1, 'rows' => [1]];
for ($i = 0; $i < 20000; $i++) {
    $chain["n$i"] = 'data:,{include n' . ($i + 1) . '}';
}

/** What came of it, without the text, which is long. */
function verdict(string $template, array $data = [], bool $isText = true): string
{
    [$result, $message] = outcome($template, $data, $isText) + [1 => ''];
    return match (true) {
        is_string($result) => 'rendered',
        preg_match('~^Template nesting is too deep in (data:,\{include n\d+}$|\{[^i])~', $message) === 1 => 'too deep',
        default => json_encode([$result, $message]),
    };
}

$sections = ['{optional v}' => '{/optional}', '{!optional x}' => '{/optional}', '{optional x}' => '{/optional}', '{optional *}' => '{/optional}',
    '{dynamic rows}' => '{/dynamic}', '{rdynamic x}' => '{/rdynamic}', '{dynamic *}' => '{/dynamic}', '{rdynamic rows}{optional [*] 0}' => '{/optional}{/rdynamic}'];
function verdicts(int $depth): string
{
    $seen = [];
    foreach ($GLOBALS['sections'] as $opening => $closing) {
        $seen[] = verdict(str_repeat($opening, $depth) . 'x' . str_repeat($closing, $depth), ['v' => 1, 'rows' => [1]]);
    }
    return implode(', ', array_unique($seen));
}

/** Both phases have their own need of stack: no depth may be fine for the one and fatal for the other. */
function staircase(): string
{
    $seen = [];
    for ($depth = 400; end($seen) !== 'too deep' && $depth < 40000; $depth = (int) ($depth * 1.3)) {
        $seen[] = verdicts($depth);
    }
    return "$seen[0] ... " . end($seen);
}

function all(): array
{
    return [verdicts(300), verdicts(30000), staircase(), verdict('{include n0}', $GLOBALS['chain']), verdict('{include n19900}', $GLOBALS['chain'])];
}

echo json_encode(all()), "\n";
// With AddressSanitizer, a function takes several times its stack.
getenv('TEST_ASAN') && ini_set('fiber.stack_size', '8M');
$fiber = new Fiber(all(...));
$fiber->start();
echo json_encode($fiber->getReturn()), "\n";
echo template('still {v}', ['v' => 'alive'], true), "\n";
?>
--EXPECT--
["rendered","too deep","rendered ... too deep","too deep","rendered"]
["rendered","too deep","rendered ... too deep","too deep","rendered"]
still alive

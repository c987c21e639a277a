<?php
// The pages of the soak test: /KIND. What each must answer, load.lua says.
$kind = trim($_SERVER['REQUEST_URI'], '/');
header("X-Kind: $kind");

final class Text
{
    public function __construct(private Closure $act)
    {
    }

    public function __toString(): string
    {
        return ($this->act)();
    }
}

/** Renders a page into whose rows an act of user code is woven. */
function rendered(Closure $act): string
{
    $rows = array_fill(0, 20, ['name' => '<b>', 'list' => [1, 2]]);
    $rows[10]['name'] = new Text($act);
    return template(__DIR__ . '/page.tpl', ['title' => 'Soak', 'rows' => $rows, 'part' => __DIR__ . '/part.tpl']) ?? 'null';
}

$ten = range(1, 10);
echo match ($kind) {
    'page' => md5(rendered(fn () => 'text')),
    'string' => template('{a}{dynamic r,b}{r::[*]}={htmlspecialchars r::*};{/dynamic}', ['a' => 'A', 'b' => ['<', 'x' => '&']], true),
    'missing' => @template('nowhere.tpl', []) . error_get_last()['message'],
    'wrong' => @template('{optional a}{dynamic r,b}', ['a' => 1, 'b' => [1]], true) . error_get_last()['message'],
    'exception' => (function () {
        try {
            return rendered(fn () => throw new DomainException('thrown'));
        } catch (DomainException $exception) {
            return $exception->getMessage();
        }
    })(),
    'exit' => rendered(fn () => exit('left')),
    'reentry' => md5(rendered(fn () => template('te{x}', ['x' => 'xt'], true))),
    'fiber' => (function () {
        $fiber = new Fiber(fn () => rendered(fn () => Fiber::suspend('suspended')));
        return $fiber->start();
    })(),
    'deep' => @template(str_repeat('{optional a}', 500000), ['a' => 1], true) . substr(error_get_last()['message'], 0, 31),
    'dead' => rendered(fn () => eval('class Text {}')),
    'memory' => template(str_repeat('{dynamic t}', 12) . str_repeat('x', 1000) . str_repeat('{/dynamic}', 12), ['t' => $ten], true),
    'usermemory' => rendered(fn () => str_repeat('x', 1 << 40)),
    'time' => template(str_repeat('{dynamic t}', 12) . str_repeat('{/dynamic}', 12), ['t' => $ten], true),
};

<?php
// The pages of the soak test: /KIND, or /PLACE-ACT for user code that does something in a place where a
// call runs it. What each must answer, load.lua says.
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

/** A file that acts when one of its functions is called. */
final class Acting
{
    public static string $place;
    public static Closure $act;
    public $context;
    private bool $ended = false;

    public function stream_open(string $path, string $mode, int $options, ?string &$opened): bool
    {
        self::$place === 'open' and (self::$act)();
        return true;
    }

    public function stream_read(int $count): string
    {
        self::$place === 'read' and (self::$act)();
        $this->ended = true;
        return '{title}';
    }

    public function stream_eof(): bool
    {
        return $this->ended;
    }

    public function stream_close(): void
    {
        self::$place === 'close' and (self::$act)();
    }
}

/** Renders a page into whose rows an act of user code is woven. */
function rendered(Closure $act): string
{
    $rows = array_fill(0, 20, ['name' => '<b>', 'list' => [1, 2]]);
    $rows[10]['name'] = new Text($act);
    return template(__DIR__ . '/page.tpl', ['title' => 'Soak', 'rows' => $rows, 'part' => __DIR__ . '/part.tpl']) ?? 'null';
}

/** Renders so that user code acts in the place. */
function acted(string $place, Closure $act): string
{
    if ($place === 'string') {
        return rendered($act);
    }
    if ($place === 'fiber') {
        // what the main program does while the call in the fiber waits
        $fiber = new Fiber(fn () => rendered(fn () => Fiber::suspend()));
        $fiber->start();
        return (string) $act();
    }
    if ($place === 'notice' || $place === 'warning') {
        set_error_handler($act);
        return template('{dynamic r,l}text{*}' . ($place === 'notice' ? '' : '{a::}') . '{/dynamic}', ['l' => $place === 'notice' ? [[1]] : [1]], true) ?? 'null';
    }
    stream_wrapper_register('acting', Acting::class);
    [Acting::$place, Acting::$act] = [$place, $act];
    return template('text{include acting://file}text', ['title' => str_repeat('title', 1000)], true) ?? 'null';
}

[$place, $act] = explode('-', $kind) + [1 => ''];
$ten = range(1, 10);
try {
    echo match ($act) {
        'throw' => acted($place, fn () => throw new DomainException('thrown')),
        'exit' => acted($place, fn () => exit('left')),
        'die' => acted($place, fn () => eval('class Text {}')),
        '' => match ($kind) {
            'page' => md5(rendered(fn () => 'text')),
            'string' => template('{a}{dynamic r,b}{r::[*]}={htmlspecialchars r::*};{/dynamic}', ['a' => 'A', 'b' => ['<', 'x' => '&']], true),
            'missing' => @template('nowhere.tpl', []) . error_get_last()['message'],
            'wrong' => @template('{optional a}{dynamic r,b}', ['a' => 1, 'b' => [1]], true) . error_get_last()['message'],
            'reentry' => md5(rendered(fn () => template('te{x}', ['x' => 'xt'], true))),
            'fiber' => (new Fiber(fn () => rendered(fn () => Fiber::suspend('suspended'))))->start(),
            'deep' => @template(str_repeat('{optional a}', 500000), ['a' => 1], true) . substr(error_get_last()['message'], 0, 31),
            'memory' => template(str_repeat('{dynamic t}', 12) . str_repeat('x', 1000) . str_repeat('{/dynamic}', 12), ['t' => $ten], true),
            'usermemory' => rendered(fn () => str_repeat('x', 1 << 40)),
            'time' => template(str_repeat('{dynamic t}', 12) . str_repeat('{/dynamic}', 12), ['t' => $ten], true),
        },
    };
} catch (DomainException $exception) {
    echo $exception->getMessage();
}

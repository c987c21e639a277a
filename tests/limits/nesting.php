<?php
/** Nesting of every kind, as the stack of this process allows: prints what is not as it must be. */
$noting = function (int $level, string $message): bool {
    $GLOBALS['warning'] = substr($message, 0, 30);
    return true;
};
set_error_handler($noting);

/** @return array[] the parts of a template around what is nested, and its data */
function kinds(): array
{
    return [
        'optional' => ['{optional a}', '{/optional}', ['a' => 1]],
        'hidden' => ['{optional b}', '{/optional}', []],
        'dynamic' => ['{dynamic a}', '{/dynamic}', ['a' => [1]]],
        'rdynamic' => ['{rdynamic a}', '{/rdynamic}', ['a' => [1]]],
    ];
}

function check(string $what, mixed $expected, mixed $seen): void
{
    if ($seen !== $expected) {
        echo "$what: ", var_export($seen, true), "\n";
    }
}

function nest(array $kind, int $depth): array
{
    $GLOBALS['warning'] = null;
    [$open, $close, $data] = $kind;
    return [template(str_repeat($open, $depth) . 'x' . str_repeat($close, $depth), $data, true), $GLOBALS['warning']];
}

function check_all(): void
{
    $tooDeep = [null, 'Template nesting is too deep i'];
    foreach (kinds() as $name => $kind) {
        check("$name, 500 levels", [$name === 'hidden' ? '' : 'x', null], nest($kind, 500));
        check("$name, a million levels", $tooDeep, nest($kind, 1000000));
        // the deepest tree that is accepted is destroyed as well
        for ([$accepted, $refused] = [500, 1000000]; $refused - $accepted > 1;) {
            $depth = intdiv($accepted + $refused, 2);
            nest($kind, $depth)[0] === null ? $refused = $depth : $accepted = $depth;
        }
        check("$name, a level too deep", $tooDeep, nest($kind, $refused));
    }
    array_map(check_recursion(...), ['string', 'handler', 'open', 'read', 'close']);
    check('500 files', 'x', template(chain(500), ['a' => 1]));
    try {
        check('50000 files', null, template(chain(50000), ['a' => 1]));
    } catch (Error) {
        // PHP may find the stack too small for the stream's code first
    }
}

/** User code that renders in the middle of a call, in which the same happens, without end. */
final class Again
{
    public $context;
    private string $place;
    private bool $ended = false;

    public static function call(string $place): ?string
    {
        static $number = 0;
        $number++;
        return match ($place) {
            'string' => template('{dynamic r,rows}{r::*}{/dynamic}', ['rows' => [new self()]], true),
            'handler' => template('{dynamic r,rows}{r::*}{/dynamic}', ['rows' => [[]]], true),
            // PHP refuses to open the same name while it is being opened.
            default => template("again://$place/$number", []),
        };
    }

    public static function handle(): bool
    {
        // PHP switches a handler off while it runs.
        set_error_handler(self::handle(...));
        self::call('handler');
        return true;
    }

    public function __toString(): string
    {
        return (string) self::call('string');
    }

    private function act(string $place): void
    {
        $this->place === $place and self::call($place);
    }

    public function stream_open(string $path, string $mode, int $options, ?string &$opened): bool
    {
        $this->place = parse_url($path, PHP_URL_HOST);
        $this->act('open');
        return true;
    }

    public function stream_read(int $count): string
    {
        $this->act('read');
        $this->ended = true;
        return 'x';
    }

    public function stream_eof(): bool
    {
        return $this->ended;
    }

    public function stream_close(): void
    {
        $this->act('close');
    }
}

function check_recursion(string $place): void
{
    $GLOBALS['warning'] = null;
    set_error_handler($place === 'handler' ? Again::handle(...) : $GLOBALS['noting']);
    try {
        Again::call($place);
        $end = $GLOBALS['warning'];
    } catch (Error $error) {
        // PHP's own, of the stack, or of a handler that is called for its own refusal
        $end = $error->getMessage();
    }
    set_error_handler($GLOBALS['noting']);
    check("recursion in $place", 1, preg_match('/^(Template nesting is too deep|Maximum call stack size)/', (string) $end));
    check("after recursion in $place", 'x', template('{a}', ['a' => 'x'], true));
}

/** A stream in which each file includes the next, inside a section. */
final class ChainStream
{
    public $context;
    private string $content;

    public function stream_open(string $path, string $mode, int $options, ?string &$opened): bool
    {
        $left = (int) substr($path, strlen('chain://'));
        $this->content = $left > 1 ? '{optional a}{include chain://' . ($left - 1) . '}{/optional}' : 'x';
        return true;
    }

    public function stream_read(int $count): string
    {
        return [$this->content, $this->content = ''][0];
    }

    public function stream_eof(): bool
    {
        return $this->content === '';
    }

    public function stream_stat(): array
    {
        return [];
    }
}

function chain(int $files): string
{
    return "chain://$files";
}

stream_wrapper_register('chain', ChainStream::class);
stream_wrapper_register('again', Again::class);
check_all();
(new Fiber(check_all(...)))->start();
echo "checked\n";

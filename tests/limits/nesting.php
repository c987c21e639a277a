<?php
/** Nesting of every kind, as the stack of this process allows: prints what is not as it must be. */
set_error_handler(function (int $level, string $message): bool {
    $GLOBALS['warning'] = substr($message, 0, 30);
    return true;
});

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
    check('500 files', 'x', template(chain(500), ['a' => 1]));
    try {
        check('50000 files', null, template(chain(50000), ['a' => 1]));
    } catch (Error) {
        // PHP may find the stack too small for the stream's code first
    }
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
check_all();
(new Fiber(check_all(...)))->start();
echo "checked\n";

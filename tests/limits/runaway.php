<?php
/**
 * Templates without end, one a process or a request: runaway.php CASE, or CASE in the request. When PHP
 * has ended it, prints as JSON how: the error, what the process used, and what the next call makes.
 */
ini_set('display_errors', 0);

/** Nanoseconds in which the process would have run, had others not had the processor. */
function waited(): int
{
    return (int) (explode(' ', (string) @file_get_contents('/proc/self/schedstat'))[1] ?? 0);
}

function used(): int
{
    $used = getrusage();
    return ($used['ru_utime.tv_sec'] + $used['ru_stime.tv_sec']) * 1000 + intdiv($used['ru_utime.tv_usec'] + $used['ru_stime.tv_usec'], 1000);
}

$case = $argv[1] ?? $_SERVER['CASE'];
$before = [used(), waited()];
register_shutdown_function(function () use ($before) {
    $error = error_get_last()['message'] ?? 'no error';
    preg_match('/VmHWM:\s*(\d+)/', file_get_contents('/proc/self/status'), $resident);
    PHP_SAPI === 'cli' or http_response_code(200);
    echo json_encode([
        'error' => preg_replace('/ (size )?of .*/', '', $error),
        'processor' => used() - $before[0],
        'waited' => intdiv(waited() - $before[1], 1000000),
        'resident' => (int) $resident[1],
        'process' => getmypid(),
        'next' => template('{a}', ['a' => 'in order'], true),
    ]);
});
if ($case === 'next') {
    return;
}
// The most memory that was resident counts from here.
@file_put_contents('/proc/self/clear_refs', '5');

final class EndlessStream
{
    public $context;
    private string $piece;

    public function stream_open(string $path, string $mode, int $options, ?string &$opened): bool
    {
        $this->piece = parse_url($path, PHP_URL_HOST) === 'silent' ? '' : '{x}more{x}';
        return true;
    }

    public function stream_read(int $count): string
    {
        return $this->piece;
    }

    public function stream_eof(): bool
    {
        return false;
    }
}

stream_wrapper_register('endless', EndlessStream::class);

function nested(string $body, int $depth = 12): string
{
    return str_repeat('{dynamic t}', $depth) . $body . str_repeat('{/dynamic}', $depth);
}

/** A call in a fiber that is never resumed, and a fatal error meanwhile. */
function left_in_fiber(string $text): void
{
    $value = new class () {
        public function __toString(): string
        {
            return Fiber::suspend();
        }
    };
    $fiber = new Fiber(fn () => template("{dynamic v}$text{*}{/dynamic}", ['v' => [$value]], true));
    $fiber->start();
    eval('final class EndlessStream {}');
}

/** Files that each include the next one twice. */
function fan_out(string $between): string
{
    $folder = tempnam(sys_get_temp_dir(), 'tpl');
    unlink($folder);
    mkdir($folder);
    foreach (range(0, 30) as $number) {
        $next = "{include $folder/" . ($number + 1) . '}';
        file_put_contents("$folder/$number", $number < 30 ? $next . $between . $next : 'end');
    }
    register_shutdown_function(function () use ($folder) {
        array_map(unlink(...), glob("$folder/*"));
        rmdir($folder);
    });
    return "$folder/0";
}

$ten = ['t' => range(1, 10)];
$large = str_repeat('"', 700000);
match ($case) {
    'text' => template(nested(str_repeat('x', 1000)), $ten, true),
    'value' => template('{dynamic r,t}' . nested('{r::*}', 4) . '{/dynamic}', ['t' => array_fill(0, 10, $large)], true),
    'escaped value' => template(nested('{htmlentities *}', 5), ['t' => array_fill(0, 10, $large)], true),
    'folded value' => template(str_repeat('{v}', 1000), ['v' => $large], true),
    'escaped once' => template('{rawurlencode v}', ['v' => str_repeat('%', 25000000)], true),
    'giant template' => template(str_repeat('{{ text }}', 3000000), [], true),
    'blocks' => template(str_repeat('{*}', 1000000), [], true),
    'alternatives' => template('{' . str_repeat('* ', 1000000) . '}', [], true),
    'path' => template('{*::' . str_repeat('a::', 1000000) . 'b}', [], true),
    'long names' => template(str_repeat('{*::' . str_repeat('n', 1000) . '}', 10000), [], true),
    'brace in a tag' => template('{x{' . str_repeat('x', 12000000), [], true),
    'includes' => template(fan_out('text{*}'), []),
    'includes of nothing' => template(fan_out(''), []),
    'idle sections' => template(nested(''), $ten, true),
    'idle conditions' => template(nested('{optional t::*::x}y{/optional}'), $ten, true),
    'endless stream' => template('endless://text', []),
    'silent stream' => template('endless://silent', []),
    'fiber' => left_in_fiber($large),
};

<?php
declare(strict_types=1);

require_once __DIR__ . '/Call.php';

const MEMORY = 'fatal: Allowed memory size';
const TIME = 'fatal: Maximum execution time';
const DEEP = 'returned null: Template nesting is too deep in ';

/** What must not be forgotten: [how it ends, the call: a shape's name or what makes it, where it runs]. */
function bombs(): array
{
    // many calls, each of them short
    $slow = ['time' => 60000];
    $unchecked = ['settings' => ['zend.max_allowed_stack_size=-1']];
    $large = 'in=dynamic rows=10';
    return array_map(fn (array $bomb): array => array_combine(['ends', 'call', 'where'], $bomb + [2 => []]), [
        // The stack.
        'long path, nested' => [DEEP . '|returned null: Missing closing', text(fn () => [str_repeat('{dynamica}', 7000) . '{include ' . str_repeat('x/', 2000) . '}', ['a' => [1]]])],
        'path at the deepest place' => ['returned', fn () => at_the_deepest('{include ' . str_repeat('x/', 100) . '}'), $slow],
        'long path at the deepest place' => ['returned', fn () => at_the_deepest('{include ' . str_repeat('x/', 2000) . '}'), $slow],
        'path in a fiber' => ['returned', fn () => in_fiber(at_the_deepest('{include ' . str_repeat('x/', 100) . '}')), $slow],
        'name in a fiber' => ['returned', fn () => in_fiber(at_the_deepest('{include ' . str_repeat('x', 200) . '}')), $slow],
        'long path in a fiber' => ['returned', fn () => in_fiber(at_the_deepest('{include ' . str_repeat('x/', 2000) . '}')), $slow],
        'path as a template, in a fiber' => ['returned', fn () => in_fiber(fn () => template(str_repeat('x/', 2000), []))],
        'path under open_basedir' => ['returned', fn () => restricted(at_the_deepest('{include ' . str_repeat('x/', 60) . '}')), $slow],
        'path under open_basedir, in a fiber' => ['returned', fn () => in_fiber(restricted(at_the_deepest('{include ' . str_repeat('x/', 60) . '}'))), $slow],
        'levels' => ['returned', fn () => levels(...), $slow + ['limit' => '1024M']],
        'levels in a fiber' => ['returned', fn () => in_fiber(levels(...)), $slow + ['limit' => '1024M']],
        'levels on a small stack' => ['returned', fn () => levels(...), $slow + ['stack' => 1024, 'only' => 'cli']],
        'levels without PHP\'s check' => ['returned', fn () => levels(...), $slow + $unchecked + ['stack' => 1024, 'only' => 'cli']],
        'levels in a fiber without PHP\'s check' => ['returned', fn () => in_fiber(levels(...)), $slow + $unchecked + ['stack' => 1024, 'only' => 'cli']],
        ...calls_in_calls(['' => [], ' on a small stack' => ['stack' => 1024, 'only' => 'cli'], ' without PHP\'s check' => $unchecked]),

        // Memory: what the tree and the calls hold.
        'keys of 8 MB, 500 sections' => [MEMORY . '|returned', text(fn () => [str_repeat('{dynamic p}{/dynamic}', 500), ['p' => [str_repeat('k', 8 << 20) => 1]]])],
        '400 includes of a comparison' => [MEMORY, 'optional compare=1000000 files=400 in=dynamic as=include'],
        '400 includes of a section name' => [MEMORY, 'text name=1000000 files=400 in=dynamic as=include'],
        '4,000,000 keys in a path, in a file' => [MEMORY, 'optional steps=4000000 in=dynamic as=file'],
        '4,000,000 keys in a path' => [MEMORY, text(fn () => ['{*::' . str_repeat('a::', 3999999) . 'b}'])],
        'alternatives' => [MEMORY, text(fn () => ['{' . str_repeat('* ', 1000000) . '}'])],
        'alternatives with a path' => [MEMORY, text(fn () => ['{' . str_repeat('*::a ', 2000000) . '}'])],
        'nested calls' => [MEMORY . '|' . DEEP . '|Error: Maximum call stack', 'variable value=240000 found=yes calls=4096'],
        'nested calls, in analysis' => [MEMORY . '|' . DEEP . '|Error: Maximum call stack', 'variable value=180000 found=yes calls=4096 when=analysis'],
        'nested calls of many tags' => [MEMORY . '|' . DEEP . '|Error: Maximum call stack', 'key count=3000 calls=4096'],
        'calls in fibers' => [MEMORY, 'variable value=240000 found=yes fibers=2430'],
        'calls in fibers, in analysis' => [MEMORY, 'variable value=180000 found=yes fibers=2430 when=analysis'],
        'deep calls in fibers' => [MEMORY, 'variable nest=1000 in=dynamic fibers=400'],
        'calls in fibers that were deep' => [TIME . '|' . MEMORY, '!optional nest=65536 as=include in=hidden fibers=512 through=handler then=throws'],
        'long paths in fibers' => [MEMORY, 'include parts=900 fibers=400 when=analysis'],
        'calls of many tags in fibers' => [MEMORY, 'key count=3000 fibers=2430'],
        'packed files that stay open' => [MEMORY . '|returned', 'variable chain=3500 tail=6000 as=include packed=yes', ['files' => 18000]],
        'packed files that were closed' => ['returned$', closed_files(...), ['files' => 18000, 'limit' => '128M']],
        'names of data' => [MEMORY, names_of_data(...)],
        'text in sections' => [MEMORY, "text text=1000 nest=12 $large"],
        'value' => [MEMORY, "variable value=700000 nest=4 found=yes $large"],
        'escaped value' => [MEMORY, "htmlentities value=700000 nest=4 found=yes $large"],
        'folded value' => [MEMORY, 'variable count=1000 value=700000 found=yes'],
        'escaped once' => [MEMORY, text(fn () => ['{rawurlencode v}', ['v' => str_repeat('%', 25000000)]])],
        'escaped once by PHP' => [MEMORY, text(fn () => ['{rawurlencode v}', ['v' => str_repeat('%', 45000000) . "\0"]])],
        'giant template' => [MEMORY, text(fn () => [str_repeat('{{ text }}', 3000000)])],
        'blocks' => [MEMORY, text(fn () => [str_repeat('{*}', 1000000)])],
        'long names' => [MEMORY, 'variable count=10000 step=1000 in=dynamic'],
        'brace in a tag' => [MEMORY, text(fn () => ['{x{' . str_repeat('x', 12000000)])],
        'includes' => [MEMORY . '|' . TIME, 'key fan=30 as=include'],
        'endless stream' => [MEMORY . '|' . TIME, stream('made://more')],

        // Time.
        'includes of nothing' => [TIME, 'optional fan=30 as=include in=hidden'],
        'idle sections' => [TIME, text(fn () => [str_repeat('{dynamic t}', 12) . str_repeat('{/dynamic}', 12), ['t' => range(1, 10)]])],
        'idle conditions' => [TIME, 'optional nest=12 compare=1 in=dynamic rows=10'],
        'silent stream' => [TIME, stream('made://silent')],
        'a body over keys that collide' => [TIME, text(fn () => ['{dynamic l}' . str_repeat('{*::' . (30000 << 14) . '}', 400000) . '{/dynamic}', ['l' => [colliding()]]]), ['limit' => '1024M']],
        'references over keys that collide' => [TIME, over(1 << 14, colliding(...)), ['limit' => '256M']],
        'references at the top level over keys that collide' => [TIME, at_the_top(...), ['limit' => '256M']],
        'references over a table made anew' => [TIME . '|returned', over(1, fn () => simplexml_load_string('<r>' . str_repeat('<a>1</a>', 50000) . '</r>')), ['limit' => '256M']],
        'a value of 300 MB' => [TIME, text(fn () => ['{dynamic l}{htmlspecialchars *}{/dynamic}', ['l' => [str_repeat('"', 300 << 20)]]]), ['limit' => '4096M']],
        'archive without an end' => [TIME, fn () => fn () => template('compress.zlib://' . sys_get_temp_dir(), [])],

        // Not taken for a runaway: what is done with does not add up.
        'conditions side by side' => ['returned$', text(fn () => ['{dynamic l}' . str_repeat('{optional *}x{/optional}', 20000) . '{/dynamic}', ['l' => [1]]])],
        'a page that goes on otherwise than it began' => ['returned$', text(fn () => [
            '{dynamic r,l}{r::*}{/dynamic}', ['l' => [...array_fill(0, 8, str_repeat('x', 1 << 20)), ...array_fill(0, 1000, 'x')]]])],
        'tags that are dropped' => ['returned$', dropped_tags(...), ['limit' => '16M']],

        // The ways out.
        'memory ends in the first escaper' => ['returned', first_escaper(...), ['only' => 'cli']],
        'fiber left' => ['fatal: Cannot redeclare', left_in_fiber(...), ['times' => 50]],
        'file left open in a fiber' => ['fatal: Cannot redeclare', file_left_in_fiber(...), ['times' => 30, 'only' => 'fpm']],
        'a signal while a FIFO is waited for' => ['returned null: Could not open file', waiting_for_fifo(...), ['only' => 'cli']],
        'a wrapper that is not there, in the include path' => ['returned$', missing_wrapper(...)],
        '1,500 nested includes' => ['returned$', fn () => innermost(1500), ['only' => 'cli', 'files' => 1024]],
    ]);
}

/** @param Closure(): array $arguments of a template that is a text */
function text(Closure $arguments): Closure
{
    return function () use ($arguments): Closure {
        [$text, $data] = $arguments() + [1 => []];
        return fn () => template($text, $data, true);
    };
}

function stream(string $name): Closure
{
    return function () use ($name): Closure {
        Made::register();
        return fn () => template($name, []);
    };
}

/** In each of the deepest sections that the stack allows. */
function at_the_deepest(string $inner): Closure
{
    return function () use ($inner) {
        set_time_limit(60);
        $nested = fn (int $levels, string $more = ''): ?string => template(str_repeat('{dynamica}', $levels) . $more, ['a' => [1]], true);
        $deep = deepest(function (int $levels) use ($nested): bool {
            $nested($levels);
            return str_starts_with(last_warning(), 'Missing');
        });
        for ($levels = $deep - 30; $levels <= $deep + 1; $levels++) {
            $nested($levels, $inner);
        }
        return '';
    };
}

function last_warning(): string
{
    return (string) array_key_last(Again::$warnings);
}

/** User code that calls again, without end, in each place where it can. */
function calls_in_calls(array $stacks): array
{
    $bombs = [];
    foreach (Shape::CHOICES['through'] as $place) {
        foreach ($stacks as $stack => $where) {
            $bombs["calls in calls through $place$stack"] = ['(returned|Error).*(Template nesting is too deep|Maximum call stack)', "text calls=1000000 through=$place", $where];
        }
    }
    return $bombs;
}

/** The largest number that is accepted. */
function deepest(callable $accepts): int
{
    for ([$accepted, $refused] = [0, 256]; $accepted === 0 || $refused - $accepted > 1;) {
        $number = $accepted === 0 ? $refused * 2 : intdiv($accepted + $refused, 2);
        Again::$warnings = [];
        match (true) {
            !$accepts($number) => [$accepted, $refused] = [$accepted ?: $refused, $number],
            $accepted === 0 => $refused = $number,
            default => $accepted = $number,
        };
    }
    Again::$warnings = [];
    return $accepted;
}

function in_fiber(Closure $call): Closure
{
    return function () use ($call) {
        $fiber = new Fiber($call);
        $fiber->start();
        return $fiber->getReturn() ?? '';
    };
}

function restricted(Closure $call): Closure
{
    ini_set('open_basedir', sys_get_temp_dir() . ':' . __DIR__ . ':/proc');
    return $call;
}

/** Sections of each kind and files, as deep as the stack lets them: 500 at least; the next is refused. */
function levels(): string
{
    set_time_limit(60);
    foreach (['optional a' => 'optional', 'optional b' => 'optional', 'dynamic a' => 'dynamic', 'rdynamic a' => 'rdynamic'] as $begin => $end) {
        $nested = fn (int $levels): ?string => template(str_repeat("{{$begin}}", $levels) . 'x' . str_repeat("{/$end}", $levels), ['a' => [1]], true);
        $deep = deepest(fn (int $levels): bool => $nested($levels) !== null);
        $deep >= 500 || throw new LogicException("Only $deep levels of {{$begin}} are accepted.");
        $nested($deep + 1) === null && str_starts_with(last_warning(), 'Template nesting is too deep')
            || throw new LogicException("A level more of {{$begin}}: " . last_warning());
    }
    Again::$warnings = [];
    return '';
}

function at_the_top(): Closure
{
    $references = '';
    for ($i = 100000; $i < 300000; $i++) {
        $references .= 'l::' . ($i << 14) . ' ';
    }
    $data = ['l' => colliding()];
    return fn () => template("{{$references}'x'}", $data, true);
}

function colliding(): array
{
    return array_fill_keys(array_map(fn (int $i): int => $i << 14, range(1, 16000)), 1);
}

/** Long enough to go over the end of a chunk, so that each is put together somewhere. */
function dropped_tags(): Closure
{
    $file = tempnam(sys_get_temp_dir(), 'template');
    register_shutdown_function(unlink(...), $file);
    $name = str_repeat('n', 3900);
    for ($i = 0; $i < 2000; $i++) {
        file_put_contents($file, "{addslashes $name}{{$name} $name 'x'}\n", FILE_APPEND);
    }
    return fn () => template($file, []) === str_repeat("x\n", 2000) ? '' : null;
}

/** Two hundred thousand references in one tag, to numbers that are multiples of one. */
function over(int $step, Closure $value): Closure
{
    return function () use ($step, $value) {
        $data = ['l' => [$value()]];
        $references = '';
        for ($i = 100000; $i < 300000; $i++) {
            $references .= '*::' . $i * $step . ' ';
        }
        return fn () => template("{dynamic l}{{$references}}{/dynamic}", $data, true);
    };
}

/** What the streams of files took is given back when they are closed. */
function closed_files(): Closure
{
    $call = new Call(Shape::named('variable chain=2000 tail=6000 as=include packed=yes'));
    return function () use ($call) {
        $before = resident('VmRSS');
        $call->make();
        gc_mem_caches();
        $kept = resident('VmRSS') - $before;
        return $kept < 24 << 10 ? '' : throw new LogicException("$kept kB are kept.");
    };
}

/** Files in files, of names of megabytes that the data holds once. */
function names_of_data(): Closure
{
    $data = [];
    for ($i = 0; $i < 12; $i++) {
        $data["f$i"] = 'data:,{include f' . ($i + 1) . '}' . str_repeat(' ', 2 << 20);
    }
    return fn () => template('{include f0}', $data, true);
}

/** Takes memory in pieces of the size in which PHP's functions make short texts, from what PHP has now. */
function fill(int $pieces): array
{
    ini_set('memory_limit', (string) memory_get_usage(true));
    $held = array_fill(0, 20000, null);
    for ($i = 0; $i < $pieces; $i++) {
        $held[$i] = str_repeat('x', 128);
    }
    return $held;
}

/**
 * PHP prints its fatal error through what calls again: that of 8.4.24, before memory errors waited until
 * the call is over. Processes of their own find out how much can be held, and then hold a little less each.
 */
function first_escaper(): Closure
{
    $ends = function (int $pieces, bool $calls): int {
        if (($child = pcntl_fork()) === 0) {
            $GLOBALS['forked'] = true;
            $page = fn () => template('{dynamic b}{htmlspecialchars *}{/dynamic}', ['b' => ['<']], true);
            ini_set('display_errors', '1');
            ob_start(fn (): string => $page() === null ? '' : '', 1);
            // What else such a call needs is there: pieces of other sizes, and its first block.
            template('{dynamic b}{*}{/dynamic}', ['b' => ['<']], true);
            $block = str_repeat('x', 8000);
            $held = fill($pieces);
            unset($block);
            $calls && $page();
            posix_kill(getmypid(), SIGKILL);
        }
        pcntl_waitpid($child, $status);
        return pcntl_wifsignaled($status) ? pcntl_wtermsig($status) : 0;
    };
    return function () use ($ends) {
        $most = deepest(fn (int $pieces): bool => $ends($pieces, false) === SIGKILL);
        for ($pieces = $most + 1; $pieces > $most - 40; $pieces--) {
            in_array($signal = $ends($pieces, true), [0, SIGKILL], true) || throw new LogicException("With $pieces pieces held it ends in signal $signal.");
        }
        return '';
    };
}

/** A call in a fiber that is never resumed, and a fatal error meanwhile. */
function left_in_fiber(): Closure
{
    $made = new Call(Shape::named('text fibers=1'));
    return function () use ($made) {
        $text = str_repeat('"', 700000);
        $fiber = new Fiber(fn () => template("{dynamic v}$text{*}{/dynamic}", ['v' => [new Again()]], true));
        $fiber->start();
        eval('final class Again {}');
    };
}

/** The same with a file that is not read to its end: it must not stay open in the worker. */
function file_left_in_fiber(): Closure
{
    $made = new Call(Shape::named('text fibers=1'));
    $file = $made->put('long', '{o}' . str_repeat('x', 1 << 20));
    return function () use ($file) {
        count(scandir('/proc/self/fd')) < 30 || throw new LogicException('Files stay open.');
        $fiber = new Fiber(fn () => template($file, ['o' => new Again()]));
        $fiber->start();
        eval('final class Again {}');
    };
}

function waiting_for_fifo(): Closure
{
    $fifo = sys_get_temp_dir() . '/template-fifo-' . getmypid();
    posix_mkfifo($fifo, 0600);
    register_shutdown_function(unlink(...), $fifo);
    pcntl_async_signals(true);
    pcntl_signal(SIGUSR1, fn () => null, false);
    return function () use ($fifo) {
        $parent = getmypid();
        $child = pcntl_fork();
        if ($child === 0) {
            $GLOBALS['forked'] = true;
            usleep(200000);
            posix_kill($parent, SIGUSR1);
            // Whoever waits again is let go at last.
            usleep(1000000);
            @fopen($fifo, 'r+');
            usleep(100000);
            posix_kill(getmypid(), SIGKILL);
        }
        return template($fifo, []);
    };
}

/** PHP says once that there is no such wrapper, as of any function that opens a file. */
function missing_wrapper(): Closure
{
    $count = function (callable $open): int {
        $count = 0;
        set_error_handler(function (int $level, string $message) use (&$count): bool {
            $count += (int) str_contains($message, 'wrapper');
            return true;
        });
        $open();
        restore_error_handler();
        return $count;
    };
    return function () use ($count) {
        set_include_path('nosuch://folder');
        $own = $count(fn () => fopen('nowhere.tpl', 'rb', true));
        $ours = $count(fn () => template('nowhere.tpl', []));
        $own === $ours || throw new LogicException("$ours complaints in place of $own.");
        return '';
    };
}

/** Files that each include the next: the innermost is in the page. */
function innermost(int $files): Closure
{
    $folder = sys_get_temp_dir() . '/template-files-' . getmypid();
    mkdir($folder);
    for ($i = 0; $i < $files; $i++) {
        file_put_contents("$folder/$i", $i === $files - 1 ? 'innermost' : "{include $folder/" . ($i + 1) . '}');
    }
    register_shutdown_function(function () use ($folder) {
        array_map(unlink(...), glob("$folder/*"));
        rmdir($folder);
    });
    return function () use ($folder) {
        $page = template("$folder/0", []);
        return $page === 'innermost' ? $page : throw new LogicException('The page is ' . var_export($page, true) . '.');
    };
}

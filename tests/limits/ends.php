<?php
/**
 * How templates without end come to theirs, on the command line and in php-fpm, whose worker must go
 * on with the next request: a line for each, "ok" or what is wrong, and what was seen. $argv[1] is the module.
 */
declare(strict_types=1);

require __DIR__ . '/../../bench/lib/FastCgi.php';

use Bench\FastCgi;

const SETTINGS = ['memory_limit' => '64M', 'max_execution_time' => '1'];
/** In kB: the limit, and PHP itself and what it keeps for its end. */
const MOST_RESIDENT = (64 + 24) * 1024;
/** In milliseconds. The limit is one of processor time, as PHP counts it on these servers. */
const MOST_TIME = 1500;

const MEMORY = 'Allowed memory';
const TIME = 'Maximum execution time';
const CASES = [
    'text' => MEMORY, 'value' => MEMORY, 'escaped value' => MEMORY, 'folded value' => MEMORY, 'escaped once' => MEMORY,
    'giant template' => MEMORY, 'blocks' => MEMORY, 'alternatives' => MEMORY, 'path' => MEMORY, 'long names' => MEMORY,
    'brace in a tag' => MEMORY, 'includes' => MEMORY,
    'includes of nothing' => TIME, 'idle sections' => TIME, 'idle conditions' => TIME,
    'silent stream' => TIME,
    // whichever comes first
    'endless stream' => MEMORY . '|' . TIME,
    // not without end, but many times: what a fiber holds in a call must not outlive the request
    'fiber' => 'Cannot redeclare',
];
const MANY_TIMES = ['fiber' => 50];

/** What is wrong with an end, if anything; `next` is what the same process says to the next request. */
function fault(array $seen, string $error, array $next): ?string
{
    return match (true) {
        preg_match("/^($error)/", $seen['error']) !== 1 => 'ended otherwise',
        $seen['next'] !== 'in order' || $next['next'] !== 'in order' => 'the next call is not in order',
        $seen['process'] !== $next['process'] => 'the worker died',
        max($seen['resident'], $next['resident']) > MOST_RESIDENT => 'too much memory',
        $seen['processor'] > MOST_TIME || $seen['wall'] - $seen['waited'] > MOST_TIME => 'too long',
        default => null,
    };
}

function check(string $server, callable $ask): void
{
    foreach (CASES as $case => $error) {
        for ($times = MANY_TIMES[$case] ?? 1; $times > 1; $times--) {
            $ask($case);
        }
        // A processor that does much else at the time is slower, too.
        for ($tries = 3; $tries > 0; $tries--) {
            $start = hrtime(true);
            $seen = $ask($case) + ['wall' => intdiv(hrtime(true) - $start, 1000000)];
            $fault = fault($seen, $error, $next = $ask('next'));
            if ($fault !== 'too long') {
                break;
            }
        }
        echo $fault ?? 'ok', ": $server, $case: ", json_encode($seen), ' then ', json_encode($next), "\n";
    }
}

function options(string $module): array
{
    $options = ['-d', "extension=$module"];
    foreach (SETTINGS as $name => $value) {
        array_push($options, '-d', "$name=$value");
    }
    return $options;
}

function answer(string $text): array
{
    return json_decode($text, true) ?? ['error' => "no answer: $text", 'next' => null];
}

$script = __DIR__ . '/runaway.php';
$options = options($argv[1]);

check('cli', function (string $case) use ($script, $options): array {
    static $last;
    if ($case === 'next') {
        return $last;
    }
    $process = proc_open([PHP_BINARY, '-n', ...$options, $script, $case], [1 => ['pipe', 'w']], $pipes);
    $last = answer(stream_get_contents($pipes[1]));
    proc_close($process);
    return $last;
});

$fpm = dirname(PHP_BINARY, 2) . '/sbin/php-fpm' . PHP_MAJOR_VERSION . '.' . PHP_MINOR_VERSION;
if (!is_executable($fpm)) {
    exit(str_repeat("skipped\n", count(CASES)) . "all tried\n");
}
$place = sys_get_temp_dir() . '/template-limits-' . getmypid();
file_put_contents("$place.conf", "[global]\nerror_log = $place.log\n[limits]\nlisten = $place.sock\npm = static\npm.max_children = 1\nuser = root\n");
$master = proc_open([$fpm, '-n', '-F', '-R', '-y', "$place.conf", ...$options], [2 => ['file', '/dev/null', 'w']], $pipes);
for ($tries = 0; !file_exists("$place.sock") && $tries < 500; $tries++) {
    usleep(10000);
}
try {
    $client = new FastCgi("$place.sock");
    check('php-fpm', fn (string $case): array => answer($client->send(FastCgi::request($script, ['CASE' => $case]))));
} finally {
    proc_terminate($master);
    proc_close($master);
    array_map(unlink(...), glob("$place.*"));
}
echo "all tried\n";

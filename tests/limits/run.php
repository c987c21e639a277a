<?php
declare(strict_types=1);

/**
 * Holds calls to the limits: run.php MODULE [quick [SEED]|full|list|soak REQUESTS|CASE…]. A case is a bomb's name or that
 * of a Shape. Each runs in a process of the command line or in a worker of php-fpm; a line tells of each
 * that is not as it must be.
 */

require __DIR__ . '/bombs.php';
require __DIR__ . '/Server.php';

/** In kB, beside PHP's limit and what the process holds without the call. */
const ROOM = 24 * 1024;
/** In milliseconds of processor time; the limit is 1000. */
const MOST_TIME = 1500;
const MEMORY_FAULT = 'too much memory';
const TIME_FAULT = 'too long';
const ENDS = 'returned|' . MEMORY . '|' . TIME . '|Error: Maximum call stack size|Error: Thrown|fatal: left|fatal: Cannot redeclare';

[, $module, $mode] = $argv + [2 => 'quick'];
exit(match ($mode) {
    'list' => print implode("\n", [...array_keys(bombs()), ...shapes(1, 1)]) . "\n",
    'quick' => check($module, quick((int) ($argv[3] ?? random_int(0, 9999)))),
    'full' => check($module, full()),
    'soak' => soak($module, (int) $argv[3]),
    default => check($module, everywhere(array_slice($argv, 2)), true),
} ? 0 : 1);

/** @return list<string> shapes of every size, and of every two: so many of each */
function shapes(int $singles, int $pairs, int $seed = 0): array
{
    $chance = new Random\Randomizer(new Random\Engine\Mt19937($seed));
    $choose = fn (int $below): int => $chance->getInt(0, $below - 1);
    $shapes = [];
    $others = Shape::SIZES;
    foreach (Shape::SIZES as $size => $most) {
        array_shift($others);
        for ($i = 0; $i < $singles; $i++) {
            $shapes[] = Shape::chosen($choose, [$size => $most])->name();
        }
        foreach ($others as $other => $mostOther) {
            for ($i = 0; $i < $pairs; $i++) {
                $pair = $chance->getInt(0, 1) ? [$size => $most, $other => $mostOther] : [$other => $mostOther, $size => $most];
                $shapes[] = Shape::chosen($choose, $pair)->name();
            }
        }
    }
    return $shapes;
}

/** @return iterable<array{string, string, string}> a case, where, and the memory limit */
function everywhere(array $cases): iterable
{
    foreach ($cases as $case) {
        foreach (['cli', 'fpm'] as $server) {
            foreach (['64M', '128M'] as $limit) {
                isset(bombs()[$case]['where']['limit']) && $limit !== '64M' || yield [$case, $server, $limit];
            }
        }
    }
}

function full(): iterable
{
    yield from everywhere(array_keys(bombs()));
    yield from spread(shapes(20, 4));
}

/** Every bomb, and of the shapes as many as the time allows. */
function quick(int $seed): iterable
{
    echo "seed $seed\n";
    foreach (array_keys(bombs()) as $number => $bomb) {
        yield [$bomb, bombs()[$bomb]['where']['only'] ?? ['cli', 'fpm'][($number + $seed) % 2], '64M'];
    }
    yield from spread((new Random\Randomizer(new Random\Engine\Mt19937($seed)))->shuffleArray(shapes(2, 1, $seed)), 30);
}

function spread(array $shapes, float $seconds = INF): iterable
{
    $end = hrtime(true) + $seconds * 1e9;
    foreach ($shapes as $number => $shape) {
        if (hrtime(true) > $end) {
            return;
        }
        yield [$shape, $number % 2 ? 'fpm' : 'cli', $number % 4 < 2 ? '64M' : '128M'];
    }
}

/** @param iterable<array{string, string, string}> $cases */
function check(string $module, iterable $cases, bool $show = false): bool
{
    $usual = ['cli' => new CommandLine($module), 'fpm' => Worker::exists() ? new Worker($module) : null];
    $counts = ['passed' => 0, 'failed' => 0, 'skipped' => 0];
    [$most, $where] = [0, ''];
    foreach ($cases as [$case, $server, $limit]) {
        $bomb = bombs()[$case] ?? ['ends' => ENDS, 'where' => []];
        $special = $bomb['where'];
        if ($usual[$server] === null || ($special['only'] ?? $server) !== $server) {
            $counts['skipped']++;
            continue;
        }
        $limit = $special['limit'] ?? $limit;
        // What is too much for the lower limit may be allowed by the higher.
        $ends = $bomb['ends'] . ($limit === '64M' ? '' : '|returned');
        $on = $server === 'fpm' && isset($special['settings']) ? new Worker($module, $special['settings']) : $usual[$server];
        $faults = [];
        do {
            $seen = $on->seen($case, $limit, $special);
            $over = ($seen['resident'] ?? 0) - $on->base() - (int) $limit * 1024;
            $fault = fault($seen, $ends, $over, $special['time'] ?? MOST_TIME);
        } while (triedAgain($on, $fault, $faults));
        match (true) {
            $on !== $usual[$server] => $on->stop(),
            // A higher limit and libxml leave more behind than the next case is allowed.
            $fault !== null || isset($special['limit']) || str_contains($case, 'data=rebuilt') => $on->restart(),
            default => null,
        };
        [$most, $where] = $over > $most ? [$over, "$case ($server $limit)"] : [$most, $where];
        $counts[$fault === null ? 'passed' : 'failed']++;
        if ($fault !== null || $show) {
            printf("%s: %s, %s %s: %s, over the limit %d MB\n", $fault ?? 'ok', $case, $server, $limit, json_encode($seen, JSON_UNESCAPED_SLASHES), $over >> 10);
        }
    }
    $usual['fpm']?->stop();
    printf("the most over the limit: %.1f MB, %s\n%d passed, %d failed, %d skipped\n", $most / 1024, $where, ...array_values($counts));
    return $counts['failed'] === 0;
}

/** Whether a fault may not be the case's own. What it turns out to be is left in $fault. */
function triedAgain(CommandLine|Worker $on, ?string &$fault, array &$faults): bool
{
    $faults[] = $fault;
    if ($fault === MEMORY_FAULT && $on instanceof Worker && count($faults) === 1) {
        $on->restart();
        return true;
    }
    if ($fault === null && $faults[0] === MEMORY_FAULT) {
        $fault = 'earlier cases have left memory behind';
    }
    // A processor that does much else at the time is slower, too.
    return $fault === TIME_FAULT && count($faults) < 3;
}

/** What is wrong with an end, if anything. */
function fault(array $seen, string $ends, int $over, int $time): ?string
{
    return match (true) {
        isset($seen['died']) => "died: $seen[died]",
        str_contains($seen['end'], 'std::') || preg_match("/^($ends)/", $seen['end']) !== 1 => 'ended otherwise',
        $seen['next'] !== 'in &lt;order' => 'the next call is wrong',
        $over > ROOM => MEMORY_FAULT,
        $seen['processor'] > $time => TIME_FAULT,
        default => null,
    };
}

/** Small hostile requests to one worker, which must live and keep its size. */
function soak(string $module, int $requests): bool
{
    $worker = new Worker($module, ['zend_extension=opcache', 'opcache.enable=1']);
    $chance = new Random\Randomizer(new Random\Engine\Mt19937(1));
    $choose = fn (int $below): int => $chance->getInt(0, $below - 1);
    $process = $worker->ask(CommandLine::NOTHING, '16M')['process'];
    $faults = 0;
    $kept = [];
    for ($number = 1; $number <= $requests; $number++) {
        $sizes = [];
        foreach ($chance->pickArrayKeys(Shape::SIZES, 2) as $size) {
            $sizes[$size] = max(1, Shape::SIZES[$size] >> $chance->getInt(8, 22));
        }
        $shape = Shape::chosen($choose, $sizes, 1 << 16, ['data' => 'plain'])->name();
        $seen = $worker->ask($shape, '16M');
        $fault = fault($seen, ENDS, 0, 2 * MOST_TIME) ?? ($seen['process'] === $process ? null : 'the worker is another');
        if ($fault !== null && $faults++ < 20) {
            echo "$fault: $shape: ", json_encode($seen), "\n";
        }
        $process = $seen['process'] ?? $process;
        if ($number % 100 === 0) {
            $kept[] = $worker->ask(CommandLine::NOTHING, '16M')['now'] ?? 0;
        }
    }
    $worker->stop();
    // What it holds moves with the requests: the least in a tenth of them is what it keeps.
    $tenths = array_map(min(...), array_chunk($kept, (int) ceil(count($kept) / 10)));
    $growth = end($tenths) - $tenths[1];
    echo 'kB that the worker keeps, in each tenth: ', implode(' ', $tenths), "\n$requests requests, $faults faults, growth $growth kB\n";
    return $faults === 0 && $growth < 4096;
}

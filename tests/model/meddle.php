<?php
/**
 * Random templates over data that changes while it is rendered: whatever user code does in the
 * middle of a call, the call ends, the next one is in order, and nothing leaks.
 *
 *     php meddle.php [CALLS [SEED]]
 *
 * What user code can do is what the fuzzers let it do; here it is done at random. What is printed is
 * not looked at: this is for runs with a sanitizer or valgrind, and for crashes.
 */

declare(strict_types=1);

require __DIR__ . '/random_cases.php';
require __DIR__ . '/../fuzz/harness.php';

/** What user code does, as the harness writes it. Nothing that ends the process. */
function acts(): string
{
    $letters = '';
    for ($count = mt_rand(0, 4); $count > 0; $count--) {
        $letters .= 'tryyllwwdkessnnaaoouuppggcciiUUGGEE'[mt_rand(0, 34)];
    }
    return "$letters;";
}

/** The members of an array or object, over the words that the templates use. */
function members(int $depth): string
{
    $members = '';
    foreach (['a', 'b', 'rows', 'list', 'map', 'num', '0', '1', 'visible'] as $key) {
        $members .= match (mt_rand(0, 5)) {
            0, 1 => '',
            2 => "$key=&" . value($depth),
            3 => "$key=@" . mt_rand(0, 9),
            default => "$key=" . value($depth),
        };
    }
    return $members;
}

function value(int $depth): string
{
    if ($depth > 0 && mt_rand(0, 1)) {
        return 'a' . members($depth - 1) . ']';
    }
    $inside = fn () => members($depth - 1) . ']';
    return match (mt_rand(0, 8)) {
        0, 1, 2 => 'oh' . acts() . ($depth > 0 ? $inside() : ']'),
        3 => 'od' . acts() . ']',
        4 => 'ol' . acts(),
        5 => ['oa', 'os'][mt_rand(0, 1)] . ($depth > 0 ? $inside() : ']'),
        6 => 'i' . mt_rand(0, 9) . ';',
        7 => 's' . str_repeat('t', mt_rand(0, 40)) . "\x1f",
        default => 'n',
    };
}

/** Forgets the data; its destructors have nothing to do any more. */
function let_go(): void
{
    World::$budget = 0;
    World::reset();
    World::$budget = 0;
    gc_collect_cycles();
}

$calls = (int) ($argv[1] ?? 1000);
mt_srand((int) ($argv[2] ?? 1));
ini_set('display_errors', '0');

$ends = ['text' => 0, 'null' => 0, 'exception' => 0];
for ($call = 0; $call < $calls; $call++) {
    $template = str_replace('{include', '{included', (new RandomCases(mt_rand()))->next()['template']);
    World::reset();
    World::$files = [];
    World::$template = $template;
    try {
        // In a fiber that is resumed, or left suspended and destroyed in the middle of the call.
        $result = render(new Script(['', 'Y', 'YR', 'YR'][mt_rand(0, 3)] . 'E' . acts(), true), members(3), false);
    } catch (Throwable) { // of a destructor
        $result = 'thrown';
    }
    let_go();
    $ends[$result === null ? 'null' : (class_exists($result) || $result === 'thrown' ? 'exception' : 'text')]++;
    if ($call === intdiv($calls, 4)) {
        gc_collect_cycles();
        $before = memory_get_usage();
    }
}
gc_collect_cycles();
$grown = memory_get_usage() - ($before ?? 0);
echo json_encode($ends), "\n";
$failed = 0;
if ($calls >= 1000 && min($ends) < $calls / 20) {
    echo "the calls are too much alike\n";
    $failed++;
}
if ($calls >= 1000 && $grown > 200_000) {
    echo "$grown bytes more in use than after a quarter of the calls\n";
    $failed++;
}
printf("%d passed, %d failed\n", $calls - $failed, $failed);
exit($failed === 0 ? 0 : 1);

<?php
/**
 * Random templates over data that changes while it is rendered: whatever user code does in the
 * middle of a call, the call ends as a text, a warning or one of our exceptions, and nothing leaks.
 *
 *     php meddle.php [CALLS [SEED]]
 *
 * What is printed is not looked at: this is for runs with a sanitizer or valgrind, and for crashes.
 */

declare(strict_types=1);

require __DIR__ . '/random_cases.php';

final class Interference extends Exception
{
}

#[AllowDynamicProperties]
final class Meddler
{
    public mixed $a = 'declared';
    public mixed $rows = [1, 2];
    private mixed $inner = 'private';

    public function __toString(): string
    {
        return World::meddle();
    }
}

/** The values that the data reaches through references, and what is done to them. */
final class World
{
    private static array $shared = [];
    private static string $template = '';
    private static int $depth = 0;

    public static function begin(string $template): array
    {
        self::$template = $template;
        self::$shared = [null, null, null, null];
        self::$shared = array_map(fn () => self::value(3), self::$shared);
        $data = [];
        foreach (['a', 'b', 'rows', 'list', 'map'] as $key) {
            if (mt_rand(0, 1)) {
                $data[$key] = &self::$shared[mt_rand(0, 3)];
            } else {
                $data[$key] = self::value(3);
            }
        }
        return $data;
    }

    public static function end(): void
    {
        self::$shared = [];
    }

    public static function meddle(): string
    {
        if (self::$depth > 3 || self::$shared === []) {
            return 'deep';
        }
        self::$depth++;
        try {
            for ($count = mt_rand(0, 3); $count > 0; $count--) {
                self::change(self::$shared[mt_rand(0, 3)]);
            }
        } finally {
            self::$depth--;
        }
        return str_repeat('m', mt_rand(0, 40));
    }

    private static function change(mixed &$target): void
    {
        switch (mt_rand(0, 8)) {
            case 0:
            case 1:
                $target = self::value(2);
                break;
            case 2:
                $target = null;
                break;
            case 3:
                if (is_array($target)) {
                    $target[] = self::value(1);
                    unset($target['rows'], $target[0]);
                }
                break;
            case 4:
                if ($target instanceof Meddler || $target instanceof stdClass) {
                    $object = $target;
                    $object->a = self::value(1);
                    unset($object->rows);
                    $object->{'added' . mt_rand(0, 99)} = 'added';
                }
                break;
            case 5:
                gc_collect_cycles();
                break;
            case 6:
                template(self::$template, ['rows' => self::$shared], true);
                break;
            case 7:
                mt_rand(0, 5) === 0 && throw new Interference();
                break;
            case 8:
                Fiber::getCurrent() !== null && Fiber::suspend();
        }
    }

    private static function value(int $depth): mixed
    {
        $kind = mt_rand(0, 11);
        if ($kind <= 4 && $depth > 0) {
            $array = [];
            foreach (['a', 'b', 'rows', 'list', 'num', 0, 1, 'visible'] as $key) {
                if (mt_rand(0, 3) === 0) {
                    $array[$key] = &self::$shared[mt_rand(0, 3)];
                } elseif (mt_rand(0, 1)) {
                    $array[$key] = self::value($depth - 1);
                }
            }
            return $array;
        }
        return match ($kind) {
            5, 6 => new Meddler(),
            7 => (object) ['a' => new Meddler(), 'b' => 2],
            8 => (new ReflectionClass(Meddler::class))->newLazyGhost(function (Meddler $made): void { World::meddle(); $made->a = 'lazy'; }),
            9 => mt_rand(0, 9),
            10 => str_repeat(chr(mt_rand(65, 90)), mt_rand(0, 40)),
            default => null,
        };
    }
}

$calls = (int) ($argv[1] ?? 1000);
mt_srand((int) ($argv[2] ?? 1));
ini_set('display_errors', '0');
set_error_handler(fn () => mt_rand(0, 3) !== 0 || World::meddle() !== '');

$ends = ['text' => 0, 'null' => 0, 'exception' => 0];
$unexpected = 0;
for ($call = 0; $call < $calls; $call++) {
    $cases = new RandomCases(mt_rand());
    $template = str_replace('{include', '{included', $cases->next()['template']);
    $data = World::begin($template);
    $run = function () use ($template, $data, &$ends, &$unexpected): void {
        try {
            $ends[template($template, $data, true) === null ? 'null' : 'text']++;
        } catch (Throwable $thrown) {
            $ends['exception']++;
            if (!$thrown instanceof Interference && !str_contains($thrown->getMessage(), 'could not be converted to string')) {
                $unexpected++;
                echo get_class($thrown), ': ', $thrown->getMessage(), "\n";
            }
        }
    };
    $fiber = new Fiber($run);
    $fiber->start();
    // Some calls are left suspended: their fibers are destroyed in the middle of them.
    for ($resumed = 0; $fiber->isSuspended() && $resumed < 20 && mt_rand(0, 9) > 0; $resumed++) {
        $fiber->resume();
    }
    unset($fiber, $run, $data);
    World::end();
    if ($call === intdiv($calls, 4)) {
        gc_collect_cycles();
        $before = memory_get_usage();
    }
}
gc_collect_cycles();
$grown = memory_get_usage() - ($before ?? 0);
echo json_encode($ends), "\n";
if ($grown > 200_000 && $calls >= 1000) {
    echo "$grown bytes more in use than after a quarter of the calls\n";
    $unexpected++;
}
printf("%d passed, %d failed\n", max(0, $calls - $unexpected), $unexpected);
exit($unexpected === 0 ? 0 : 1);

--TEST--
All that user code may do in the middle of a call, at every place where a call runs user code
--INI--
default_charset=nonsense
internal_encoding=
--FILE--
<?php
require __DIR__ . '/matrix.inc';

/** What the caller is to see, by the rules. */
function expected(array $place, string $act, array $before, array $after): array
{
    if ($act === 'throw' && !isset($place['uncalled'])) {
        return ['thrown', []];
    }
    $elements = $place[2] === 'before' ? $before : $after;
    if (($place['itself'] ?? '') === 'rdynamic') {
        $elements = array_reverse($elements);
    }
    $shown = implode(array_map(fn ($value) => "($value" . ($place['inside'] ?? '') . ')', $elements));
    return [sprintf($place[1], $shown), []];
}

$tried = $wrong = 0;
foreach (['array', 'object'] as $kind) {
    foreach (places($kind) as $name => $place) {
        foreach (array_diff_key(acts(), ['exit' => 0, 'die' => 0]) as $act => $do) {
            if (!is_tried(++$tried)) {
                continue;
            }
            $seen = $expected = null;
            $fiber = new Fiber(function () use ($place, $kind, $do, &$seen) {
                $seen = act_at($place, $kind, $do);
            });
            $fiber->start();
            $isSuspended = $fiber->isSuspended();
            unset($fiber);
            gc_collect_cycles();
            if ($isSuspended) {
                $isRight = $act === 'suspend' && !isset($place['uncalled']);
            } else {
                $isRight = ($act !== 'suspend' || isset($place['uncalled']))
                    && array_slice($seen, 0, 2) === ($expected = expected($place, $act, $seen[2], $seen[3]));
            }
            if (!$isRight || Act::$called === isset($place['uncalled']) || plain() !== '0p1qv') {
                $wrong++;
                echo "$name, $kind, $act: ", json_encode(['seen' => array_slice($seen ?? [], 0, 2), 'expected' => $expected,
                    'called' => Act::$called, 'suspended' => $isSuspended]), "\n";
            }
        }
    }
}
echo "$tried combinations, $wrong wrong\n";

// What ends a script does so; its shutdown functions render.
$ended = $wrong = 0;
foreach (places('array') as $name => $place) {
    foreach (isset($place['uncalled']) ? [] : ['exit' => 7, 'die' => 255] as $act => $status) {
        if (!is_tried(++$ended)) {
            continue;
        }
        $code = 'require ' . var_export(__DIR__ . '/matrix.inc', true) . ';
            register_shutdown_function(function () { echo "\n", plain(); });
            act_at(places("array")[' . var_export($name, true) . '], "array", acts()["' . $act . '"]);
            echo "returned";';
        [$output, $seen] = run_script($code, ['default_charset' => 'nonsense']);
        if ($seen !== $status || !str_ends_with($output, "\n0p1qv") || str_contains($output, 'returned')) {
            $wrong++;
            echo "$name, $act: ", json_encode([$output, $seen]), "\n";
        }
    }
}
echo "$ended ends, $wrong wrong\n";
--EXPECT--
946 combinations, 0 wrong
84 ends, 0 wrong

<?php

declare(strict_types=1);

/*
 * What is run under callgrind: workloads by hand and by the extension, so many renderings of each that the marks
 * around them weigh nothing. Only what lies between the marks is counted: neither start-up nor compilation, nor the
 * data. It starts and stops for each of them, so that the rest runs at full speed.
 */

namespace Bench;

require __DIR__ . '/lib/bootstrap.php';

[, $scratch, $seed] = $argv;
$native = Native::load($scratch);
foreach (\array_slice($argv, 3) as $name) {
    $workload = new Workload($name, $scratch);
    $data = $workload->data((int) $seed);
    foreach (['hand' => engines\HandWritten::class, 'ours' => engines\Ours::class] as $kind => $class) {
        $engine = new $class($workload, $data);
        $output = [$engine->render(), $engine->render(), $engine->render()][0];
        $count = \max(2, \min(1000, \intdiv(500_000, \strlen($output))));
        $native->begin_count();
        for ($i = 0; $i < $count; $i++) {
            $engine->render();
        }
        $native->end_count("$name/$kind/$count");
    }
}

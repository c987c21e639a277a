<?php

declare(strict_types=1);

/*
 * What is run under callgrind: every workload by hand and by the extension, so many renderings of each that the
 * marks around them weigh nothing. Only what lies between the marks is counted: neither start-up nor compilation.
 * It starts and stops for each of them, so that the rest runs at full speed.
 */

namespace Bench;

require \dirname(__DIR__) . '/lib/bootstrap.php';

[, $library, $scratch, $engines, $workloads] = $argv;
$marks = \FFI::cdef('void begin_count(void); void end_count(const char *name);', $library);
foreach (\explode(',', $workloads) as $name) {
    $workload = new Workload($name, $scratch);
    foreach (\explode(',', $engines) as $kind) {
        $engine = match ($kind) {
            'ours' => new engines\Ours($workload, $workload->data()),
            'hand' => new engines\HandWritten($workload, $workload->data()),
        };
        $count = Instructions::RENDERINGS[$name];
        for ($i = 0; $i < 3; $i++) {
            $engine->render();
        }
        $marks->begin_count();
        for ($i = 0; $i < $count; $i++) {
            $engine->render();
        }
        $marks->end_count("$name/$kind/");
    }
}

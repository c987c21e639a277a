<?php

declare(strict_types=1);

/*
 * The process that is measured: it holds one engine, gets one command a line (JSON) on standard input, and answers
 * each with a line. lib/Worker.php is the other end.
 */

namespace Bench;

require __DIR__ . '/lib/bootstrap.php';

[, $engine, $scratch] = $argv;
$measured = new Measured($engine, $scratch);
while (($line = \fgets(\STDIN)) !== false) {
    [$command, $arguments] = \json_decode($line, true, 512, \JSON_THROW_ON_ERROR);
    $answer = $measured->$command(...$arguments);
    \fwrite(\STDOUT, \json_encode($answer, \JSON_THROW_ON_ERROR) . "\n");
}

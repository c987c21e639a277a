<?php
// Plays inputs of the fuzzers in the command-line PHP: replay.php TARGET PROGRESS FILE...
// The file PROGRESS holds the number of the input that is played, for a caller to see which one
// ended the process; inputs may do that by rights, with exit() or a fatal error.
function_exists('template') || exit(97);
[, $target, $progress] = $argv;
$inputs = array_map('file_get_contents', array_slice($argv, 3));
$progress = fopen($progress, 'w');
require __DIR__ . '/harness.php';

foreach ($inputs as $number => $input) {
    ftruncate($progress, 0);
    rewind($progress);
    fwrite($progress, $number);
    play($input, $target);
}

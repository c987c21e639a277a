<?php

// The processor time that this process has taken so far, in microseconds.

$usage = getrusage();
$seconds = $usage['ru_utime.tv_sec'] + $usage['ru_stime.tv_sec'];
echo 1_000_000 * $seconds + $usage['ru_utime.tv_usec'] + $usage['ru_stime.tv_usec'];

<?php

// The processor time that this process has taken so far, in microseconds.

$usage = getrusage();
echo 1_000_000 * ($usage['ru_utime.tv_sec'] + $usage['ru_stime.tv_sec']) + $usage['ru_utime.tv_usec'] + $usage['ru_stime.tv_usec'];

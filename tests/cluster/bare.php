<?php

/** What a call of template() takes by itself, with the data there: bare.php TEMPLATE ROWS. Prints microseconds of CPU a row. */

declare(strict_types=1);

$template = file_get_contents($argv[1]);
$rows = [];
foreach (new LimitIterator(new SplFileObject($argv[2]), 0, 50_000) as $line) {
    $line === '' || $rows[] = json_decode($line, true);
}
$cpu = static function (): float {
    $used = getrusage();

    return ($used['ru_utime.tv_sec'] + $used['ru_stime.tv_sec']) * 1e6 + $used['ru_utime.tv_usec'] + $used['ru_stime.tv_usec'];
};
$start = $cpu();
foreach ($rows as $row) {
    template($template, $row, true);
}
printf("%.2f\n", ($cpu() - $start) / count($rows));

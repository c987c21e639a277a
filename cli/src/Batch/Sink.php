<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

/** Where the results go. */
interface Sink
{
    /** Skips the rows that an interrupted run has done already, and makes ready to go on after them. */
    public function prepare(RowReader $rows, RowRenderer $renderer): Done;

    /** Takes one row, and tells its fault: the row's own, or why its result cannot be kept. */
    public function put(Row $row): ?string;

    /** Nothing may stay in memory while the input has nothing to read. */
    public function flush(): void;

    /** All rows are done. */
    public function complete(): void;
}

<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

/** Where the results go. */
interface Sink
{
    /** Skips the rows that an interrupted run has done already, and makes ready to go on after them. */
    public function prepare(RowReader $rows, RowRenderer $renderer): Done;

    /** Makes of a row what put() takes. */
    public function pack(Row $row): Packed;

    /** Takes one row after the other, and tells its fault. */
    public function put(Packed $row): ?string;

    /** Nothing may stay in memory while the input has nothing to read. */
    public function flush(): void;

    /** All rows are done. */
    public function complete(): void;
}

<?php

declare(strict_types=1);

namespace Bench;

/** A Markdown file that keeps the last table between two comments. */
final class Report
{
    private const PLACE = '{(<!-- measured: [^\n]* -->\n).*?(<!-- end of measured -->)}s';

    private readonly string $text;

    /** Throws when the file has no place for it: better now than after the measurements. */
    public function __construct(private readonly string $file)
    {
        $this->text = (string) @\file_get_contents($file);
        if (\preg_match(self::PLACE, $this->text) !== 1) {
            throw new \InvalidArgumentException("$file has no lines <!-- measured: … --> and <!-- end of measured -->");
        }
    }

    public function replace(string $report): void
    {
        $put = static fn (array $marks): string => "$marks[1]\n$report\n$marks[2]";
        \file_put_contents($this->file, \preg_replace_callback(self::PLACE, $put, $this->text));
    }
}

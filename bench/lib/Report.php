<?php

declare(strict_types=1);

namespace Bench;

/** A Markdown file that keeps the last report of each kind between two comments. */
final class Report
{
    private readonly string $pattern;
    private readonly string $text;

    /** Throws when the file has no place for a report: better now than after the measurements. */
    public function __construct(private readonly string $file, string $mode)
    {
        $command = './dev bench ' . ($mode === 'compare' ? '' : "--$mode ") . '--into';
        $this->pattern = '{(<!-- measured: ' . \preg_quote($command) . ' [^\n]* -->\n).*?(<!-- end of measured -->)}s';
        $this->text = (string) @\file_get_contents($file);
        if (\preg_match($this->pattern, $this->text) !== 1) {
            throw new \RuntimeException("$file has no lines <!-- measured: $command … --> and <!-- end of measured -->");
        }
    }

    public function replace(string $report): void
    {
        $put = static fn (array $marks): string => "$marks[1]\n$report\n$marks[2]";
        \file_put_contents($this->file, \preg_replace_callback($this->pattern, $put, $this->text));
    }
}

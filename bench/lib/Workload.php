<?php

declare(strict_types=1);

namespace Bench;

/**
 * One thing to render: data, and a template for every engine that makes the same bytes of it.
 *
 * The folder workloads/NAME holds data.php, which returns a function that makes the data, and the templates:
 * template.tpl (ours), template.php (hand-written), template.twig and template.smarty. Where a templates.php
 * stands instead, it writes the four into the folder that it is given.
 */
final class Workload
{
    /** The side-by-side workloads, in the order of the report. */
    public const ALL = [
        'table' => '1000 rows × 6 fields, 2 escaped',
        'nested' => '100 × 20, conditional and key per item',
        'escape' => '500 long texts, 5 % special bytes',
        'page' => 'a 5 KB page from a file, 15 variables, 3 conditionals, a short loop',
        'mail' => 'a 600-byte string template, 8 variables',
        'static' => '200 KB of text, 20 variables',
        'include' => 'a page of 12 included files',
    ];

    /** Handed over as a string at each call; the other workloads are files. */
    private const STRINGS = ['mail'];

    public readonly bool $isString;

    /** @param string $scratch where generated templates are, or go: see generate() */
    public function __construct(public readonly string $name, private readonly string $scratch)
    {
        $this->isString = \in_array($name, self::STRINGS, true);
    }

    /** The folder whose subfolders are the workloads that were written by hand. */
    public static function folder(): string
    {
        return \dirname(__DIR__) . '/workloads';
    }

    /** Writes the templates of the workloads that generate theirs. */
    public static function generate(string $scratch): void
    {
        foreach (\glob(self::folder() . '/*/templates.php') as $generator) {
            $folder = $scratch . '/templates/' . \basename(\dirname($generator));
            \is_dir($folder) || \mkdir($folder, 0o777, true);
            (require $generator)($folder);
        }
    }

    /**
     * Where templates are looked for. Those that include others were generated; sites too have them in the folder
     * that is searched first.
     *
     * @return list<string>
     */
    public static function templateFolders(string $scratch): array
    {
        return [$scratch . '/templates', self::folder()];
    }

    /** The absolute name of the template with the ending given. */
    public function template(string $ending): string
    {
        foreach (self::templateFolders($this->scratch) as $folder) {
            $file = "$folder/$this->name/template.$ending";
            if (\is_file($file)) {
                return $file;
            }
        }
        throw new \RuntimeException("No template.$ending for the workload $this->name");
    }

    /** @return array<string, mixed> the data, with as many rows (or groups, or texts) as asked for */
    public function data(?int $size = null): array
    {
        $make = require self::folder() . "/$this->name/data.php";
        return $size === null ? $make() : $make($size);
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Lint;

use TemplateCli\UsageError;

/** The files under the paths of a command line, in the order of their names. */
final readonly class FileFinder
{
    private const array SKIPPED_FOLDERS = ['.git', '.hg', '.svn'];

    /** @param list<string> $names patterns that the names of files in folders must match; none for all */
    public function __construct(private array $names)
    {
    }

    /**
     * @param list<string> $paths
     *
     * @return list<string>
     */
    public function find(array $paths): array
    {
        $files = [];
        foreach ($paths as $path) {
            array_push($files, ...match (true) {
                is_dir($path) => $this->inFolder($path),
                file_exists($path) => [$path],
                default => throw new UsageError("There is no file or folder \"$path\"."),
            });
        }

        return array_values(array_unique($files));
    }

    /** @return list<string> */
    private function inFolder(string $folder): array
    {
        $files = [];
        try {
            $inner = new \RecursiveDirectoryIterator($folder, \FilesystemIterator::SKIP_DOTS);
            $filter = new \RecursiveCallbackFilterIterator($inner, $this->isWanted(...));
            foreach (new \RecursiveIteratorIterator($filter) as $file) {
                $files[] = preg_replace('~^(\./+)+|(?<=/)/+~', '', $file->getPathname());
            }
        } catch (\UnexpectedValueException $exception) {
            throw new UsageError("Could not read a folder under $folder: {$exception->getMessage()}.");
        }
        sort($files, SORT_STRING);

        return $files;
    }

    /** Holds a NUL byte early on, which no template does. */
    public static function isBinary(string $file): bool
    {
        return str_contains((string) @file_get_contents($file, length: 8192), "\0");
    }

    private function isWanted(\SplFileInfo $file): bool
    {
        $name = $file->getFilename();
        if ($file->isDir()) {
            // A link to a folder could lead round in a circle.
            return !$file->isLink() && !in_array($name, self::SKIPPED_FOLDERS, true);
        }

        return $file->isFile()
            && ($this->names === [] || array_any($this->names, static fn (string $glob): bool => fnmatch($glob, $name)));
    }
}

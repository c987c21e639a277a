<?php

declare(strict_types=1);

namespace TemplateCli\Lint;

use Symfony\Component\Finder\Exception\AccessDeniedException;
use Symfony\Component\Finder\Finder;
use TemplateCli\UsageError;

/** The files under the paths of a command line, in the order of their names. */
final readonly class FileFinder
{
    public const string STANDARD_INPUT = '-';
    private const array SKIPPED_FOLDERS = ['vendor', 'node_modules'];
    private const string USUAL_NAME = '*.tpl';

    /** @param list<string> $names patterns that the names of files in folders must match */
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
                $path === self::STANDARD_INPUT, $path === '/dev/stdin' => [self::STANDARD_INPUT],
                is_dir($path) => $this->inFolder($path),
                file_exists($path) => [$path],
                default => throw new UsageError("There is no file or folder \"$path\"."),
            });
        }
        $names = implode(', ', $this->names ?: [self::USUAL_NAME]);

        return $files === []
            ? throw new UsageError("There is no file named $names in " . implode(', ', $paths) . ' (--name takes others).')
            : array_values(array_unique($files));
    }

    /** @return list<string> */
    private function inFolder(string $folder): array
    {
        try {
            $finder = new Finder()->files()->in($folder)->name($this->names ?: self::USUAL_NAME)
                ->exclude(self::SKIPPED_FOLDERS)->ignoreDotFiles(false);
            $files = array_map(
                static fn (\SplFileInfo $file): string => preg_replace('~^(\./+)+|(?<=/)/+~', '', $file->getPathname()),
                array_values(iterator_to_array($finder, false)),
            );
        } catch (AccessDeniedException|\UnexpectedValueException $exception) {
            throw new UsageError("Could not read a folder under $folder: {$exception->getMessage()}.");
        }
        sort($files, SORT_STRING);

        return $files;
    }
}

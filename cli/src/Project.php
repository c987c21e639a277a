<?php

declare(strict_types=1);

namespace TemplateCli;

/**
 * What a project says about its templates, in a file "template.json" in their folder or above it, so that commands need
 * no flags. All paths in it start from its own folder.
 */
final readonly class Project
{
    public const string FILE = 'template.json';

    /**
     * @param list<string> $paths
     * @param list<string> $includePath
     * @param list<string> $names
     * @param list<string> $allowRaw
     * @param list<string> $off
     * @param array<string, list<string>> $data files with sample data, by a pattern for the templates that they are for
     */
    private function __construct(
        public array $paths = [],
        public array $includePath = [],
        public array $names = [],
        public array $allowRaw = [],
        public array $off = [],
        public array $data = [],
        /** Where it is; empty when there is none. */
        public string $file = '',
    ) {
    }

    /** The project that a file or folder belongs to: the nearest one above it. */
    public static function around(string $path): self
    {
        $folder = is_dir($path) ? $path : dirname($path);
        // PHP may be told to look no further up (open_basedir), and warns.
        do {
            if (@is_file("$folder/" . self::FILE)) {
                return self::read("$folder/" . self::FILE);
            }
            $before = @realpath($folder);
            $folder = in_array(basename($folder), ['.', '..', ''], true) ? "$folder/.." : dirname($folder);
        } while ($before !== false && @realpath($folder) !== $before);

        return new self();
    }

    /** The files with sample data for this template. @return list<string> */
    public function dataFor(string $template): array
    {
        $template = self::plain($template);
        $matching = array_filter(
            $this->data,
            static fn (string $pattern): bool => fnmatch($pattern, $template),
            ARRAY_FILTER_USE_KEY,
        );

        return array_values(array_unique(array_merge(...array_values($matching))));
    }

    public static function read(string $file): self
    {
        $json = @file_get_contents($file);
        if ($json === false) {
            throw new UsageError("Could not read the project file $file.");
        }
        try {
            $content = Json::data($json);
        } catch (\JsonException $exception) {
            throw new UsageError("The project file $file is not a JSON object: {$exception->getMessage()}.");
        }
        $unknown = array_diff(array_keys($content), ['paths', 'include-path', 'name', 'allow-raw', 'off', 'data']);
        if ($unknown !== []) {
            throw new UsageError("The project file $file has an entry \"" . reset($unknown) . '" that means nothing.');
        }
        $folder = self::plain(dirname($file) . '/');
        $list = static fn (string $entry): array => self::texts($file, $entry, $content[$entry] ?? []);
        $paths = static fn (array $texts): array => array_map(
            static fn (string $path): string => $path[0] === '/' ? $path : ($path === '.' && $folder !== '' ? rtrim($folder, '/') : "$folder$path"),
            array_filter($texts, static fn (string $path): bool => $path !== ''),
        );
        $data = [];
        $samples = $content['data'] ?? [];
        // Files without a pattern are for all templates.
        foreach (is_array($samples) && !array_is_list($samples) ? $samples : ['*' => $samples] as $pattern => $files) {
            $data["$folder$pattern"] = $paths(self::texts($file, 'data', (array) $files));
        }

        return new self(
            $paths($list('paths')),
            $paths($list('include-path')),
            $list('name'),
            $list('allow-raw'),
            $list('off'),
            $data,
            $file,
        );
    }

    private static function plain(string $path): string
    {
        return preg_replace('~^(\./+)+|(?<=/)(\./+)+~', '', $path);
    }

    /** @return list<string> */
    private static function texts(string $file, string $entry, mixed $value): array
    {
        return is_array($value) && array_all($value, static fn (mixed $text): bool => is_string($text))
            ? array_values($value)
            : throw new UsageError("The entry \"$entry\" of the project file $file should be a list of texts.");
    }
}

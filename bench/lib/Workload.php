<?php

declare(strict_types=1);

namespace Bench;

/**
 * One thing to render: data, and a template for every engine that makes the same bytes of it.
 *
 * workloads/NAME.php returns a function that makes the data, with as many rows as asked for, and the template's
 * text as Notation knows it (or several texts by name, of which the one called "template" is rendered). Where there is
 * no text, the folder workloads/NAME holds the four templates.
 */
final class Workload
{
    /** The side-by-side workloads, in the order of the report: file, where the data comes from, number of rows. */
    public const ALL = [
        'table' => ['table', 'php', 1000, '1000 rows × 6 fields, 2 escaped'],
        'table-json' => ['table', 'json', 1000, 'the same, its rows from json_decode'],
        'table-db' => ['table', 'db', 1000, 'the same, its rows from SQLite through PDO'],
        self::LARGE => ['table', 'php', 100_000, 'the same, of 100,000 rows'],
        'nested' => ['nested', 'php', 100, '100 shelves of 10 to 30 items, conditional and key per item'],
        'nested-json' => ['nested', 'json', 100, 'the same, from json_decode'],
        'differ' => ['differ', 'php', 1000, '1000 rows that differ: keys that come and go, alternatives, lists in them'],
        'escape' => ['escape', 'php', 500, '500 long texts, 5 % special characters at random places'],
        'scripts' => ['scripts', 'php', 50, 'escaped texts in nine scripts: 12 at the top level, 50 in a section'],
        'page' => ['page', 'php', 5, 'a page from a file of 4 KB, 15 variables, 3 conditionals, a short loop'],
        'mail' => ['mail', 'php', 1, 'a 600-byte string template, 8 variables'],
        'static' => ['static', 'php', 20, '200 KB of text, 20 variables'],
        'include' => ['include', 'php', 1, 'a page of 12 included files'],
    ];

    /** Takes seconds: left out where it would tell nothing new. */
    public const LARGE = 'table-100000';

    /** Handed over as a string at each call; the other workloads are files. */
    public readonly bool $isString;

    private readonly string $file;

    /** @param string $scratch where the templates that are written are, or go: see write() */
    public function __construct(public readonly string $name, private readonly string $scratch)
    {
        $this->file = self::ALL[$name][0];
        $this->isString = $this->file === 'mail';
    }

    /** Writes the templates that are kept as one text. */
    public static function write(string $scratch): void
    {
        foreach (\glob(self::folder() . '/*.php') as $file) {
            $folder = "$scratch/templates/" . \basename($file, '.php');
            foreach ((array) ((require $file)['template'] ?? []) as $name => $text) {
                \is_dir($folder) || \mkdir($folder, 0o777, true);
                Notation::write($folder, \is_string($name) ? $name : 'template', $text);
            }
        }
    }

    private static function folder(): string
    {
        return \dirname(__DIR__) . '/workloads';
    }

    /**
     * Where templates are looked for. Those that include others are written; sites too have them in the folder that
     * is searched first.
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
            if (\is_file($file = "$folder/$this->file/template.$ending")) {
                return $file;
            }
        }
        throw new \RuntimeException("No template.$ending for the workload $this->name");
    }

    /** The same below its folder. */
    public function templateName(string $ending): string
    {
        return "$this->file/template.$ending";
    }

    /** @return array<string, mixed> */
    public function data(int $seed): array
    {
        [, $source, $size] = self::ALL[$this->name];
        $data = (require self::folder() . "/$this->file.php")['data'](new Chance($seed), $size);
        return match ($source) {
            'php' => $data,
            'json' => \json_decode(\json_encode($data, \JSON_THROW_ON_ERROR), true),
            'db' => ['rows' => self::throughDatabase($data['rows'])] + $data,
        };
    }

    /** @param list<array<string, mixed>> $rows @return list<array<string, mixed>> */
    private static function throughDatabase(array $rows): array
    {
        $database = new \PDO('sqlite::memory:');
        $names = \array_keys($rows[0]);
        $database->exec('CREATE TABLE data (' . \implode(', ', $names) . ')');
        $values = \implode(', ', \array_fill(0, \count($names), '?'));
        $statement = $database->prepare("INSERT INTO data VALUES ($values)");
        foreach ($rows as $row) {
            $statement->execute(\array_values($row));
        }
        return $database->query('SELECT * FROM data')->fetchAll(\PDO::FETCH_ASSOC);
    }
}

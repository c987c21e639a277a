<?php
declare(strict_types=1);

/**
 * The folder that the site is written to. A list of the files that are ours lies in the folder, so that the next run
 * can replace them, remove what it does not write again, and leave everything else alone.
 */
final class OutputFolder
{
    private const LIST = '.files';
    private const FIRST_LINE = "These files were rendered, and are replaced or removed by the next run:\n";

    /** @var array<string, true> what earlier runs wrote */
    private array $old = [];
    /** @var array<string, true> what this run has written */
    private array $new = [];

    /** Opens a folder, which is new, empty, or ours from an earlier run. */
    public function __construct(private readonly string $path)
    {
        if (!is_dir($path) && !@mkdir($path, 0777, true)) {
            throw new RuntimeException("the folder $path cannot be made");
        }
        $list = "$path/" . self::LIST;
        if (is_file($list)) {
            $this->old = $this->readList((string) file_get_contents($list));
        } elseif (count(scandir($path)) > 2) {
            throw new RuntimeException("the folder $path holds other files: name an empty or a new one");
        }
    }

    /** Writes a file; its name may begin with a folder, as in "sections/libs.html". */
    public function write(string $name, string $content): void
    {
        $file = "$this->path/$name";
        if (file_exists($file) && !isset($this->old[$name])) {
            throw new RuntimeException("the file $file is in the way: it was not rendered by this script");
        }
        if (!is_dir(dirname($file)) && !@mkdir(dirname($file))) {
            throw new RuntimeException('the folder ' . dirname($file) . ' cannot be made');
        }
        if (!isset($this->old[$name])) {
            $this->writeList($this->old += [$name => true]);
        }
        $this->new[$name] = true;
        $this->put($file, $content);
    }

    /** Removes what earlier runs wrote and this one did not. */
    public function finish(): void
    {
        foreach (array_diff_key($this->old, $this->new) as $name => $_) {
            @unlink("$this->path/$name");
            @rmdir(dirname("$this->path/$name"));   // succeeds when that was its last file
        }
        $this->writeList($this->new);
    }

    /** @return array<string, true> */
    private function readList(string $text): array
    {
        if (!str_starts_with($text, self::FIRST_LINE)) {
            throw new RuntimeException("the folder $this->path holds a " . self::LIST . ' file of something else');
        }
        // A name that this script cannot have written is not taken at its word.
        preg_match_all('~^(?:(?:sections|mails|how)/)?[a-z0-9@_+-][a-z0-9@_+.-]*$~m', $text, $names);
        return array_fill_keys($names[0], true);
    }

    /** @param array<string, true> $names */
    private function writeList(array $names): void
    {
        $this->put("$this->path/" . self::LIST, self::FIRST_LINE . implode("\n", array_keys($names)) . "\n");
    }

    /** A file appears whole or not at all, and a link in its place is replaced, not followed. */
    private function put(string $file, string $content): void
    {
        $new = "$file.new";
        if (@file_put_contents($new, $content) !== strlen($content) || !@rename($new, $file)) {
            @unlink($new);
            throw new RuntimeException("the file $file cannot be written");
        }
    }
}

<?php
/**
 * The examples in the documents: fenced blocks whose first word says what they are.
 *
 *     ```template           a text to render; with a name behind it, a file to render or to include
 *     ```data               the data as JSON; "data php" as a PHP array; no block, no data
 *     ```php                a program that is run; with a name behind it, a file, and the last one is run
 *     ```output             what comes out; a final line end is not compared
 *     ```warning            the warnings that come with it; without an output, null came out
 *
 * The blocks of an example follow one another, with prose between them as it likes. An example ends
 * with its output, its warning, or both. "…" in these two stands for whatever is there. A block of
 * code that is nobody's example says so: "php fragment", "template fragment". One that is a part of a
 * file says of which: "php from examples/a.php". All other fences (console, html, sh …) are none of
 * this reader's business.
 */

declare(strict_types=1);

final class Example
{
    /** @var array<string, string> the files it is about, by name */
    public array $files = [];
    /** The text to render; null when a file is rendered or a program run. */
    public ?string $text = null;
    /** The file to render or to run, unless there is a text. */
    public ?string $main = null;
    /** The data as it is written. */
    public string $data = '[]';
    public bool $dataIsPhp = false;
    public ?string $output = null;
    public ?string $warning = null;

    public function __construct(public readonly string $heading, public readonly int $line)
    {
    }

    public function isProgram(): bool
    {
        return $this->main !== null && str_ends_with($this->main, '.php');
    }

    public function hasResult(): bool
    {
        return $this->output !== null || $this->warning !== null;
    }

    public function data(): array
    {
        return $this->dataIsPhp ? eval("return $this->data;") : json_decode($this->data, true, flags: JSON_THROW_ON_ERROR);
    }

    /** @param string[] $words what the fence says, without its first word */
    public function add(string $kind, array $words, string $block): void
    {
        $name = $words[0] ?? null;
        switch ($kind) {
            case 'template':
            case 'php':
                if ($kind === 'template' && $name === null) {
                    $this->text = without_last_line_end($block);
                } else {
                    $this->main = $name ?? 'example.php';
                    $this->files[$this->main] = $kind === 'php' && !str_starts_with($block, '<?php') ? "<?php\n$block" : $block;
                }
                break;
            case 'data':
                $this->data = $block;
                $this->dataIsPhp = $name === 'php';
                break;
            default:
                $this->$kind = without_last_line_end($block);
        }
    }
}

function without_last_line_end(string $text): string
{
    return str_ends_with($text, "\n") ? substr($text, 0, -1) : $text;
}

/** @return iterable<Example> */
function examples_in(string $markdown): iterable
{
    $heading = '';
    $example = null;
    foreach (blocks_in($markdown) as [$line, $info, $block]) {
        $words = preg_split('/\s+/', $info, -1, PREG_SPLIT_NO_EMPTY);
        $kind = array_shift($words);
        if ($kind === '#') {
            $heading = $block;
        }
        if (!in_array($kind, ['template', 'data', 'php', 'output', 'warning'], true) || in_array($words[0] ?? '', ['fragment', 'from'], true)) {
            continue;
        }
        $isResult = in_array($kind, ['output', 'warning'], true);
        if ($example?->hasResult() && (!$isResult || $example->$kind !== null)) {
            yield $example;
            $example = null;
        }
        $example ??= new Example($heading, $line);
        $example->add($kind, $words, $block);
    }
    if ($example !== null) {
        yield $example;
    }
}

/** @return iterable<array{int, string, string}> blocks that are parts of files: line, name of the file, content */
function quotations_in(string $markdown): iterable
{
    foreach (blocks_in($markdown) as [$line, $info, $block]) {
        if (preg_match('/^\S+ from (\S+)$/', $info, $match)) {
            yield [$line, $match[1], $block];
        }
    }
}

/** Headings and fenced blocks: [line, what the fence says or "#", content]. */
function blocks_in(string $markdown): iterable
{
    $fence = null;
    foreach (explode("\n", $markdown) as $number => $line) {
        if ($fence !== null) {
            if (preg_match('/^\s*(`{3,})\s*$/', $line, $match) && strlen($match[1]) >= strlen($fence[0])) {
                yield [$fence[2], $fence[3], $fence[4]];
                $fence = null;
            } else {
                $fence[4] .= preg_replace("/^ {0,$fence[1]}/", '', $line) . "\n";
            }
        } elseif (preg_match('/^( *)(`{3,})\s*([^`]*)$/', $line, $match)) {
            $fence = [$match[2], strlen($match[1]), $number + 1, trim($match[3]), ''];
        } elseif (preg_match('/^#+\s+(.*?)\s*#*$/', $line, $match)) {
            yield [$number + 1, '#', $match[1]];
        }
    }
    if ($fence !== null) {
        throw new RuntimeException("line $fence[2]: the fence is not closed");
    }
}

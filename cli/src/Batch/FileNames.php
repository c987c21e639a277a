<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\Engine;
use TemplateCli\UsageError;

/** Makes a file's name for each row. The pattern is a template itself: "mails/{rawurlencode user::name}.txt". */
final readonly class FileNames
{
    /** The folder, with its slash, that all names begin with; they never lead out of it. */
    public string $folder;
    private Engine $engine;

    public function __construct(public string $pattern)
    {
        $constant = substr($pattern, 0, (int) strpos($pattern, '{'));
        $this->folder = substr($constant, 0, (int) strrpos("/$constant", '/'));
        $this->engine = new Engine();
        if ($pattern === '' || str_ends_with($pattern, '/')) {
            throw new UsageError('The pattern should name a file, such as "pages/{id}.html".');
        }
    }

    public static function isPattern(string $output): bool
    {
        return str_contains($output, '{');
    }

    /** @return array{?string, ?string} the name, or null and what is wrong */
    public function of(Row $row): array
    {
        $outcome = $this->engine->render($this->pattern, $row->data + ['#' => $row->line], true);
        $name = $outcome->result;

        return match (true) {
            $name === null => [null, "The pattern fails: $outcome->fault"],
            str_contains($name, '{') => [null, "The pattern names data that the row does not have: $name"],
            preg_match('~(^|/)\.{0,2}(/|$)~D', substr($name, strlen($this->folder))) === 1
                => [null, "The pattern gives no file name that is safe to use: $name"],
            default => [$name, null],
        };
    }
}

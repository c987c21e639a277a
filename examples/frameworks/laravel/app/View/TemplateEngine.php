<?php

declare(strict_types=1);

namespace App\View;

use ErrorException;
use Illuminate\Contracts\Support\Arrayable;
use Illuminate\Contracts\View\Engine;

/** A view engine for template(); included files are looked for in the folders of the views. */
final class TemplateEngine implements Engine
{
    /** @param list<string> $folders */
    public function __construct(private readonly array $folders)
    {
    }

    /** @throws ErrorException when the template is at fault, or writes an array */
    public function get($path, array $data = []): string
    {
        $includePath = set_include_path(implode(PATH_SEPARATOR, [...$this->folders, get_include_path()]));
        set_error_handler(fn (int $level, string $message) => throw new ErrorException($message, 0, $level, $path, 1), E_WARNING);
        try {
            return template($path, self::plain($data));
        } finally {
            restore_error_handler();
            set_include_path($includePath);
        }
    }

    /** Templates look into arrays, not into objects: collections and models become arrays. */
    private static function plain(mixed $value): mixed
    {
        $value = $value instanceof Arrayable ? $value->toArray() : $value;
        return is_array($value) ? array_map(self::plain(...), $value) : $value;
    }
}

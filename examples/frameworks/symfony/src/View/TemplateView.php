<?php

declare(strict_types=1);

namespace App\View;

use ErrorException;
use Symfony\Component\DependencyInjection\Attribute\Autowire;
use Symfony\Component\HttpFoundation\Response;

/** Renders the templates of a folder; what they include is looked for in there as well. */
final class TemplateView
{
    public function __construct(#[Autowire('%kernel.project_dir%/templates')] private readonly string $folder)
    {
    }

    public function response(string $name, array $data = [], int $status = 200): Response
    {
        return new Response($this->render($name, $data), $status);
    }

    /** @throws ErrorException when the template is at fault, or writes an array */
    public function render(string $name, array $data = []): string
    {
        $file = "$this->folder/$name";
        $includePath = set_include_path($this->folder . PATH_SEPARATOR . get_include_path());
        set_error_handler(fn (int $level, string $message) => throw new ErrorException($message, 0, $level, $file, 1), E_WARNING);
        try {
            return template($file, $data);
        } finally {
            restore_error_handler();
            set_include_path($includePath);
        }
    }
}

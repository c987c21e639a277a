<?php

declare(strict_types=1);

namespace TemplateCli;

/** Calls template() and catches what it says. */
final class Engine
{
    /** @var list<string> */
    private array $messages = [];

    public static function isLoaded(): bool
    {
        return function_exists('template');
    }

    /** @param array<mixed> $data */
    public function render(string $template, array $data, bool $isText = false): Outcome
    {
        $this->messages = [];
        set_error_handler(function (int $level, string $message): bool {
            $this->messages[] = $message;

            return true;
        });
        try {
            $result = template($template, $data, $isText);
        } catch (\Throwable $exception) {
            // An include with an empty name, or an object without a text. Only of the template's own file there is also
            // a message of the engine's.
            $last = $this->messages[array_key_last($this->messages) ?? -1] ?? null;
            $isNamed = str_starts_with($last ?? '', 'Could not open file');

            return new Outcome(null, $isNamed ? $last : $exception->getMessage(), $this->messages);
        } finally {
            restore_error_handler();
        }
        $fault = $result === null ? array_pop($this->messages) ?? 'template() failed' : null;

        return new Outcome($result, $fault, $this->messages);
    }
}

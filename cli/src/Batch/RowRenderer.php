<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\Engine;
use TemplateCli\Failure;
use TemplateCli\Json;
use TemplateCli\Language\Fault;
use TemplateCli\Language\Files;
use TemplateCli\Language\Scan;
use TemplateCli\Language\Scanner;

/** Renders the template with one row after the other. */
final readonly class RowRenderer
{
    private string $text;
    private Engine $engine;

    /** @param array<mixed> $common what every row has, unless it has its own */
    public function __construct(private string $template, private array $common)
    {
        $this->text = Files::read($template) ?? throw new Failure("Could not open file $template");
        $fault = self::certainFault(new Scanner()->scanFile($template));
        if ($fault !== null) {
            throw new Failure("$fault->place: $fault->message: the template fails whatever the data");
        }
        $this->engine = new Engine();
    }

    public function render(int $line, string $json): Row
    {
        try {
            $data = Json::data($json) + $this->common;
        } catch (\JsonException $exception) {
            $why = str_replace(' at line 1, column ', ' at column ', $exception->getMessage());

            return new Row($line, [], null, "The line is not a JSON object or list: $why");
        }
        // From memory, as opening the file a million times costs as much as rendering it. Only the messages differ:
        // they name the file when it is rendered as one.
        $outcome = $this->engine->render($this->text, $data, true);
        $fault = $outcome->fault;
        if ($fault !== null && is_file($this->template)) {
            $fault = $this->engine->render($this->template, $data)->fault ?? $fault;
        }

        return new Row($line, $data, $outcome->result, $fault, $outcome->notices);
    }

    /** What the engine refuses in every row. An include whose name the data could replace, such as {include content}, is not. */
    private static function certainFault(?Scan $scan): ?Fault
    {
        $isCertain = static fn (Fault $fault): bool => !$fault->dependsOnData && $fault->place->file === $scan->source->name;
        $own = $scan === null ? null : array_find($scan->faults, $isCertain);
        foreach ($own === null ? $scan->includes ?? [] : [] as $include) {
            if (strpbrk($include->name, './') !== false && !$scan->circular) {
                $own ??= self::certainFault(new Scanner()->scanFile($include->name));
            }
        }

        return $own;
    }

    /** Stands for the template in a journal. */
    public function fingerprint(): string
    {
        return hash('xxh3', $this->text);
    }
}

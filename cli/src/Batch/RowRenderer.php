<?php

declare(strict_types=1);

namespace TemplateCli\Batch;

use TemplateCli\Engine;
use TemplateCli\Failure;
use TemplateCli\Json;
use TemplateCli\Language\Files;

/** Renders the template with one row after the other. */
final readonly class RowRenderer
{
    private string $text;
    private Engine $engine;

    /** @param array<mixed> $common what every row has, unless it has its own */
    public function __construct(private string $template, private array $common)
    {
        $this->text = Files::read($template) ?? throw new Failure("Could not open file $template");
        $this->engine = new Engine();
    }

    public function render(int $line, string $json): Row
    {
        try {
            $data = Json::data($json) + $this->common;
        } catch (\JsonException $exception) {
            return new Row($line, [], null, "The line is not a JSON object or list: {$exception->getMessage()}");
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

    /** Stands for the template in a journal. */
    public function fingerprint(): string
    {
        return hash('xxh3', $this->text);
    }
}

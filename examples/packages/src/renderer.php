<?php
declare(strict_types=1);

/** Calls template() and takes the time. */
final class Renderer
{
    public int $calls = 0;
    public int $bytes = 0;
    public float $seconds = 0.0;

    /** Renders a template file. */
    public function file(string $name, array $data): string
    {
        return $this->render($name, $data, false);
    }

    /** Renders a template that is in a string. */
    public function string(string $template, array $data): string
    {
        return $this->render($template, $data, true);
    }

    private function render(string $template, array $data, bool $stringMode): string
    {
        $start = hrtime(true);
        $text = template($template, $data, $stringMode);
        $this->seconds += (hrtime(true) - $start) / 1e9;
        if ($text === null) {
            throw new RuntimeException('a template is not well-formed: the warning above says where');
        }
        $this->calls++;
        $this->bytes += strlen($text);
        return $text;
    }
}

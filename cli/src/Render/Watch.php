<?php

declare(strict_types=1);

namespace TemplateCli\Render;

use TemplateCli\Language\Files;
use TemplateCli\Language\Scanner;
use TemplateCli\UsageError;

/** Waits until one of the files that a result depends on changes, comes or goes. */
final class Watch
{
    private const int PAUSE_MICROSECONDS = 250_000;

    /** @var array<string, string> */
    private array $seen;

    /** @param \Closure(): array<mixed> $data where include tags may find the name of their file */
    public function __construct(
        private readonly string $template,
        private readonly bool $isText,
        private readonly ?string $dataFile,
        private readonly \Closure $data,
    ) {
        $this->seen = $this->look();
    }

    public function waitForChange(): void
    {
        while (($now = $this->look()) === $this->seen) {
            usleep(self::PAUSE_MICROSECONDS);
        }
        $this->seen = $now;
    }

    /**
     * The contents count, not only the times: two edits can fall into one second.
     *
     * @return array<string, string> a fingerprint for each file
     */
    private function look(): array
    {
        clearstatcache(true);
        $prints = [];
        foreach ($this->files() as $file) {
            $path = Files::resolve($file);
            $prints[$file] = $path === null || !is_file($path) ? 'missing' : (string) @hash_file('xxh3', $path);
        }

        return $prints;
    }

    /** @return list<string> */
    private function files(): array
    {
        $scanner = new Scanner($this->data());
        $scan = $this->isText ? $scanner->scanText($this->template) : $scanner->scanFile($this->template);
        $included = array_map(strval(...), array_keys($scan->reached ?? []));

        $named = [$this->isText ? null : $this->template, $this->dataFile];

        return [...array_values(array_filter($named, is_string(...))), ...$included];
    }

    /** @return array<mixed> */
    private function data(): array
    {
        try {
            return ($this->data)();
        } catch (UsageError) {
            // Data that is being edited can be broken for a while.
            return [];
        }
    }
}

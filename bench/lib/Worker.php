<?php

declare(strict_types=1);

namespace Bench;

/** A process of its own that renders with one engine; the calls are those of Measured, made over there. */
final class Worker
{
    /** @var resource */
    private $process;

    /** @var array<int, resource> */
    private array $pipes = [];

    public function __construct(Settings $settings, public readonly string $engine)
    {
        $command = [
            ...Processes::onOneCore(),
            $settings->php,
            ...$settings->options($engine === 'jit'),
            \dirname(__DIR__) . '/worker.php',
            $engine,
            $settings->scratch,
        ];
        $this->process = \proc_open($command, [['pipe', 'r'], ['pipe', 'w']], $this->pipes);
        $this->check();
    }

    public function __destruct()
    {
        \array_map(\fclose(...), $this->pipes);
        \proc_close($this->process);
    }

    /** @param array<int, mixed> $arguments */
    public function __call(string $command, array $arguments): mixed
    {
        \fwrite($this->pipes[0], \json_encode([$command, $arguments], \JSON_THROW_ON_ERROR) . "\n");
        $answer = \fgets($this->pipes[1]);
        if ($answer === false) {
            throw new \RuntimeException("The process of the engine '$this->engine' has ended");
        }
        return \json_decode($answer, true, 512, \JSON_THROW_ON_ERROR);
    }

    private function check(): void
    {
        $found = $this->describe();
        $fault = match (true) {
            !$found['opcache'] => 'opcache is not on',
            $found['debugger'] => 'a debugging extension is loaded',
            $found['jit'] !== ($this->engine === 'jit') => 'JIT is not as it should be',
            default => null,
        };
        if ($fault !== null) {
            throw new \RuntimeException("Engine '$this->engine': $fault");
        }
    }
}

<?php

declare(strict_types=1);

use PHPUnit\Framework\TestCase;

/** A folder of its own for each test, and the command line to run in its subfolder "work". */
abstract class CliTestCase extends TestCase
{
    protected string $folder;
    private string $before;

    protected function setUp(): void
    {
        $this->folder = sys_get_temp_dir() . '/template-cli-' . bin2hex(random_bytes(6));
        mkdir("$this->folder/work", recursive: true);
        $this->before = getcwd();
        chdir("$this->folder/work");
        // "template" for shell commands
        mkdir("$this->folder/bin");
        $command = implode(' ', array_map(escapeshellarg(...), self::command()));
        file_put_contents("$this->folder/bin/template", "#!/bin/sh\nexec $command \"\$@\"\n");
        chmod("$this->folder/bin/template", 0o755);
    }

    protected function tearDown(): void
    {
        chdir($this->before);
        exec('rm -rf ' . escapeshellarg($this->folder));
    }

    /** @return list<string> */
    protected static function command(bool $withExtension = true): array
    {
        $extension = $withExtension ? ['-d', 'extension=' . getenv('TEMPLATE_SO')] : [];

        return [PHP_BINARY, ...$extension, dirname(__DIR__, 2) . '/bin/template'];
    }

    /** @return array{int, string, string} exit status, standard output, standard error */
    protected function template(string ...$arguments): array
    {
        return $this->finish($this->start([...self::command(), ...$arguments], ''));
    }

    /** @return array{int, string, string} */
    protected function templateWithInput(string $input, string ...$arguments): array
    {
        return $this->finish($this->start([...self::command(), ...$arguments], $input));
    }

    /** @return array{int, string, string} */
    protected function shell(string $command): array
    {
        return $this->finish($this->start(['sh', '-c', "PATH=$this->folder/bin:\$PATH\n$command"], ''));
    }

    /**
     * @param list<string> $command
     *
     * @param ?array<string, string> $environment
     *
     * @return resource the process
     */
    protected function start(array $command, string $input, ?array $environment = null)
    {
        file_put_contents("$this->folder/in", $input);

        return proc_open($command, [['file', "$this->folder/in", 'r'], ...$this->outputs()], $pipes, null, $environment);
    }

    /** @return array{int, string, string} */
    protected function finish($process): array
    {
        return [proc_close($process), file_get_contents("$this->folder/out"), $this->errors()];
    }

    /**
     * A process that reads what the test writes to the pipe.
     *
     * @param ?resource $pipe
     *
     * @return resource
     */
    protected function startWithPipe(array $arguments, &$pipe)
    {
        $process = proc_open([...self::command(), ...$arguments], [['pipe', 'r'], ...$this->outputs()], $pipes);
        $pipe = $pipes[0];

        return $process;
    }

    /** @return list<array{string, string, string}> */
    private function outputs(): array
    {
        return [['file', "$this->folder/out", 'w'], ['file', "$this->folder/err", 'w']];
    }

    protected function errors(): string
    {
        return (string) @file_get_contents("$this->folder/err");
    }

    /** How much slower than usual PHP is, as under valgrind: so many times fewer cases are tried. */
    protected static function slowness(): int
    {
        return (int) (getenv('TEST_SLOWNESS') ?: 1);
    }

    /** @param array<string, string> $files */
    protected function files(array $files): void
    {
        foreach ($files as $name => $content) {
            is_dir(dirname($name)) || mkdir(dirname($name), recursive: true);
            file_put_contents($name, $content);
        }
    }

    protected function waitUntil(Closure $condition, string $what): void
    {
        $patience = 300; // seconds: it costs nothing where all is well
        for ($end = microtime(true) + $patience; microtime(true) < $end; usleep(20_000)) {
            clearstatcache();
            if ($condition()) {
                $this->addToAssertionCount(1);

                return;
            }
        }
        self::fail("$what did not happen within $patience seconds: {$this->errors()}");
    }
}

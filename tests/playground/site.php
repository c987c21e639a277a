<?php
declare(strict_types=1);

/** The playground on a port of its own, as ./dev serve starts it. */
final class Site
{
    private $process;

    private function __construct(public readonly string $address, private readonly array $command)
    {
        $this->process = proc_open($command, [['file', '/dev/null', 'r'], ['file', '/dev/null', 'w'], ['file', '/dev/null', 'w']], $pipes);
        for ($tries = 0; !@stream_socket_client("tcp://$address"); $tries++) {
            if ($tries > 200 || !$this->isRunning()) {
                throw new RuntimeException('the playground does not start');
            }
            usleep(50_000);
        }
    }

    public static function start(): self
    {
        $socket = stream_socket_server('tcp://127.0.0.1:0');
        $address = stream_socket_get_name($socket, false);
        fclose($socket);
        return new self($address, [getenv('PHP'), '-n', '-d', 'extension=' . getenv('TEMPLATE_SO'), '-S', $address, 'examples/playground/router.php']);
    }

    public function isRunning(): bool
    {
        return proc_get_status($this->process)['running'];
    }

    public function stop(): void
    {
        proc_terminate($this->process, SIGINT);
        proc_close($this->process);
    }

    /** @return array{int, string, array<string, string>} status, body, headers */
    public function ask(string $method, string $path, array $headers = [], string $body = ''): array
    {
        $context = stream_context_create(['http' => [
            'method' => $method,
            'header' => $headers,
            'content' => $body,
            'ignore_errors' => true,
            'timeout' => 30,
        ]]);
        $text = file_get_contents("http://$this->address$path", false, $context);
        $lines = http_get_last_response_headers();
        $fields = [];
        foreach (array_slice($lines, 1) as $line) {
            [$name, $value] = explode(': ', $line, 2);
            $fields[strtolower($name)] = $value;
        }
        return [(int) explode(' ', $lines[0])[1], $text, $fields];
    }

    /** @return array{int, array} */
    public function render(string $template, string $data = '{}'): array
    {
        [$status, $body] = $this->ask('POST', '/render', ['Content-Type: application/json'], json_encode(['template' => $template, 'data' => $data]));
        return [$status, json_decode($body, true)];
    }
}

<?php

declare(strict_types=1);

namespace Bench;

/** A client of one FastCGI connection that is kept open: one request after the other, each the same bytes. */
final class FastCgi
{
    private const BEGIN = 1;
    private const END = 3;
    private const PARAMETERS = 4;
    private const INPUT = 5;
    private const OUTPUT = 6;

    /** @var resource */
    private $socket;

    private string $buffer = '';

    public function __construct(string $address, int $patience = 10)
    {
        $this->socket = \stream_socket_client("unix://$address", $code, $message, 5)
            ?: throw new \RuntimeException("No connection to php-fpm: $message");
        \stream_set_timeout($this->socket, $patience);
    }

    /** The bytes of a request for a script. @param array<string, string> $parameters what it finds in $_SERVER */
    public static function request(string $script, array $parameters): string
    {
        $parameters += [
            'SCRIPT_FILENAME' => $script,
            'REQUEST_METHOD' => 'GET',
            'REQUEST_URI' => '/',
            'SERVER_PROTOCOL' => 'HTTP/1.1',
        ];
        $pairs = '';
        foreach ($parameters as $name => $value) {
            $pairs .= \pack('N', \strlen($name) | 1 << 31) . \pack('N', \strlen($value) | 1 << 31) . $name . $value;
        }
        // Role 1 is the responder's, flag 1 keeps the connection.
        return self::record(self::BEGIN, \pack('nCx5', 1, 1))
            . self::record(self::PARAMETERS, $pairs)
            . self::record(self::PARAMETERS, '')
            . self::record(self::INPUT, '');
    }

    /** Sends a request and returns the body of the answer. */
    public function send(string $request): string
    {
        \fwrite($this->socket, $request);
        $answer = '';
        do {
            [$type, $content] = $this->receive();
            if ($type === self::OUTPUT) {
                $answer .= $content;
            }
        } while ($type !== self::END);
        [$head, $body] = \explode("\r\n\r\n", $answer, 2) + [1 => ''];
        if (\preg_match('/^Status: (.*)/m', $head, $status)) {
            throw new \RuntimeException("php-fpm answered $status[1]: $body");
        }
        return $body;
    }

    private static function record(int $type, string $content): string
    {
        return \pack('CCnnCx', 1, $type, 1, \strlen($content), 0) . $content;
    }

    /** @return array{int, string} type and content of the next record */
    private function receive(): array
    {
        $header = \unpack('Cversion/Ctype/nid/nlength/Cpadding', $this->read(8));
        return [$header['type'], \substr($this->read($header['length'] + $header['padding']), 0, $header['length'])];
    }

    private function read(int $length): string
    {
        while (\strlen($this->buffer) < $length) {
            $bytes = \fread($this->socket, 65536);
            if ($bytes === '' || $bytes === false) {
                throw new \RuntimeException('php-fpm has closed the connection');
            }
            $this->buffer .= $bytes;
        }
        $read = \substr($this->buffer, 0, $length);
        $this->buffer = \substr($this->buffer, $length);
        return $read;
    }
}

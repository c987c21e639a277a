<?php

declare(strict_types=1);

namespace TemplateCli;

use TemplateCli\Language\Encoding;
use TemplateCli\Language\Source;

/** JSON as user data, and results as JSON. */
final class Json
{
    /**
     * Objects and lists become arrays; integers that PHP cannot hold stay text, so that they print as written.
     *
     * @return array<mixed>
     *
     * @throws \JsonException with the place in its message
     */
    public static function data(string $json): array
    {
        $data = self::value(self::utf8($json));

        return is_array($data) ? $data : throw new \JsonException('neither an object nor a list');
    }

    /** @throws \JsonException */
    public static function value(string $json): mixed
    {
        try {
            return json_decode($json, true, 512, JSON_THROW_ON_ERROR | JSON_BIGINT_AS_STRING);
        } catch (\JsonException $exception) {
            [$line, $column] = match ($exception->getCode()) {
                JSON_ERROR_UTF8 => self::invalidUtf8($json),
                JSON_ERROR_DEPTH => throw $exception,
                default => JsonFault::place($json),
            };
            $message = "{$exception->getMessage()} at line $line, column $column";
            throw new \JsonException($message, $exception->getCode(), $exception);
        }
    }

    /**
     * Some editors begin UTF-8 with a byte order mark; that is no fault of the data.
     *
     * @throws \JsonException
     */
    private static function utf8(string $json): string
    {
        if (Encoding::isUtf16($json)) {
            throw new \JsonException('it is UTF-16; JSON is UTF-8');
        }

        return str_starts_with($json, Encoding::MARK) ? substr($json, strlen(Encoding::MARK)) : $json;
    }

    /** @return array{int, int} */
    private static function invalidUtf8(string $json): array
    {
        $character = '[\x00-\x7F]|[\xC2-\xDF][\x80-\xBF]|(?:\xE0[\xA0-\xBF]|[\xE1-\xEC\xEE\xEF][\x80-\xBF]|\xED[\x80-\x9F])[\x80-\xBF]'
            . '|(?:\xF0[\x90-\xBF]|[\xF1-\xF3][\x80-\xBF]|\xF4[\x80-\x8F])[\x80-\xBF]{2}';
        preg_match("/\\A(?:$character)*+/", $json, $valid);

        return new Source('', "{$valid[0]} ")->position(strlen($valid[0]));
    }

    /** One line, and UTF-8 as it is. @throws \JsonException */
    public static function line(mixed $value, int $flags = 0): string
    {
        return json_encode($value, JSON_THROW_ON_ERROR | JSON_UNESCAPED_SLASHES | JSON_UNESCAPED_UNICODE | $flags);
    }
}

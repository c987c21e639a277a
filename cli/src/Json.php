<?php

declare(strict_types=1);

namespace TemplateCli;

/** JSON as user data, and results as JSON. */
final class Json
{
    /**
     * Objects and lists become arrays; integers that PHP cannot hold stay text, so that they print as written.
     *
     * @return array<mixed>
     *
     * @throws \JsonException
     */
    public static function data(string $json): array
    {
        $data = self::value($json);

        return is_array($data) ? $data : throw new \JsonException('neither an object nor a list');
    }

    /** @throws \JsonException */
    public static function value(string $json): mixed
    {
        return json_decode($json, true, 512, JSON_THROW_ON_ERROR | JSON_BIGINT_AS_STRING);
    }

    /** One line, and UTF-8 as it is. @throws \JsonException */
    public static function line(mixed $value, int $flags = 0): string
    {
        return json_encode($value, JSON_THROW_ON_ERROR | JSON_UNESCAPED_SLASHES | JSON_UNESCAPED_UNICODE | $flags);
    }
}

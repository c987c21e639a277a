<?php

declare(strict_types=1);

namespace TemplateCli;

use TemplateCli\Language\Source;

/**
 * Where a text stops being JSON, which PHP does not tell. The parsers that do are slow (seconds for a megabyte) and name
 * the token before; all that is needed here is which token may follow which.
 */
final class JsonFault
{
    private const string TOKEN = '~\G[ \t\r\n]*+(?:([{}\[\],:])|("(?:[^"\\\\\x00-\x1f]++|\\\\(?:["\\\\/bfnrt]|u[0-9a-fA-F]{4}))*+")'
        . '|(?:-?(?:0|[1-9][0-9]*+)(?:\.[0-9]++)?(?:[eE][+-]?[0-9]++)?+|(?i:true|false|null))(?![\w.]))~';

    /** @return array{int, int} line and column, from 1 */
    public static function place(string $json): array
    {
        return new Source('', $json)->position(self::offset($json));
    }

    private static function offset(string $json): int
    {
        // What may come next: a value, a key, an end; and the brackets that are open.
        [$state, $open, $at] = ['value', '', 0];
        while (preg_match(self::TOKEN, $json, $token, PREG_UNMATCHED_AS_NULL, $at) === 1) {
            $sign = $token[1] ?? ($token[2] !== null ? 'string' : 'number');
            $inner = substr($open, -1);
            $next = match (true) {
                $sign === '{' && self::wantsValue($state), $sign === '[' && self::wantsValue($state)
                    => $sign === '{' ? 'key or }' : 'value or ]',
                $sign === '}' && $inner === '{' && in_array($state, ['key or }', 'after'], true),
                $sign === ']' && $inner === '[' && in_array($state, ['value or ]', 'after'], true) => 'after',
                $sign === ',' && $state === 'after' && $inner !== '' => $inner === '{' ? 'key' : 'value',
                $sign === ':' && $state === 'colon' => 'value',
                $sign === 'string' && str_starts_with($state, 'key') => 'colon',
                in_array($sign, ['string', 'number'], true) && self::wantsValue($state) => 'after',
                default => null,
            };
            if ($next === null) {
                break;
            }
            $open = match ($sign) {
                '{', '[' => $open . $sign,
                '}', ']' => substr($open, 0, -1),
                default => $open,
            };
            [$state, $at] = [$next, $at + strlen($token[0])];
        }

        return $at + strspn($json, " \t\r\n", $at);
    }

    private static function wantsValue(string $state): bool
    {
        return str_starts_with($state, 'value');
    }
}

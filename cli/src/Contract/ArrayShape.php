<?php

declare(strict_types=1);

namespace TemplateCli\Contract;

/** The contract as an array shape for "@param", as PHP's static analysers read it. */
final class ArrayShape
{
    public static function docblock(Contract $contract): string
    {
        return "/**\n * @param " . self::shape($contract->root, ' * ') . " \$data\n */\n";
    }

    private static function value(Shape $shape, string $indent): string
    {
        $hasMore = array_any($shape->usages, static fn (Usage $usage): bool => $usage->hasDefault || $usage->alternatives !== []);
        $type = match (true) {
            $shape->keys !== [] => self::shape($shape, $indent),
            $shape->element !== null => 'array<' . self::value($shape->element, $indent) . '>',
            $shape->needsText(), $shape->has(UseKind::File) => 'string',
            $shape->has(UseKind::Text, UseKind::Escaped) => $hasMore ? 'string|int|float' : 'scalar|null',
            $shape->has(UseKind::Comparison) => 'string|int|null',
            default => 'mixed',
        };
        $mayBeNothing = $type !== 'mixed' && $type !== 'scalar|null'
            && ($shape->isOnlyConditional() || ($shape->element !== null && $shape->mayBeMissing));

        return $mayBeNothing && !str_ends_with($type, '|null') ? "$type|false|null" : $type;
    }

    private static function shape(Shape $shape, string $indent): string
    {
        $rest = $shape->element === null ? '...' : '...<' . self::value($shape->element, "$indent    ") . '>';
        $text = "array{\n";
        foreach ($shape->keys as $key => $inner) {
            $optional = $inner->isRequired() ? '' : '?';
            $text .= "$indent    " . self::key($key) . "$optional: " . self::value($inner, "$indent    ") . ",\n";
        }

        return "$text$indent    $rest\n$indent}";
    }

    private static function key(int|string $key): string
    {
        return is_int($key) || preg_match('/^[a-z_][a-z0-9_-]*$/iD', $key) === 1
            ? (string) $key
            : "'" . addcslashes(mb_scrub($key, 'UTF-8'), "'\\\0..\37") . "'";
    }
}

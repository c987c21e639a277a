<?php

declare(strict_types=1);

namespace TemplateCli\Contract;

/** The contract as a JSON Schema. */
final class Schema
{
    private const string DIALECT = 'https://json-schema.org/draft/2020-12/schema';
    private const array NOTHING = ['enum' => [null, false, 0, '', '0', []]];

    /** @return array<string, mixed> */
    public static function of(Contract $contract): array
    {
        return ['$schema' => self::DIALECT, 'type' => 'object'] + self::properties($contract->root);
    }

    /** @return array<string, mixed>|\stdClass */
    private static function value(Shape $shape): array|\stdClass
    {
        $schema = self::typed($shape);
        if ($schema === []) {
            return new \stdClass();
        }
        $mayBeNothing = $shape->isOnlyConditional() || ($shape->element !== null && $shape->mayBeMissing);

        return $mayBeNothing ? ['anyOf' => [$schema, self::NOTHING]] : $schema;
    }

    /** @return array<string, mixed> */
    private static function typed(Shape $shape): array
    {
        $isPrinted = $shape->has(UseKind::Text, UseKind::Escaped);
        if ($shape->keys === [] && $shape->element === null) {
            return match (true) {
                $shape->needsText(), $shape->has(UseKind::File) => ['type' => 'string'],
                $isPrinted => ['type' => self::printed($shape)],
                $shape->has(UseKind::Comparison) => ['type' => ['string', 'integer', 'null']],
                default => [],
            };
        }
        $schema = self::properties($shape);
        if ($shape->element !== null) {
            $element = self::value($shape->element);
            $schema = ['type' => ['array', 'object'], 'items' => $element] + $schema + ['additionalProperties' => $element];
            $list = ['type' => ['array', 'object'], 'items' => $element, 'additionalProperties' => $element];
            $special = ['num' => $list] + ($shape->has(UseKind::Condition) ? ['visible' => new \stdClass()] : []);
            $schema['properties'] = (object) ((array) ($schema['properties'] ?? []) + $special);
        } elseif (!$isPrinted) {
            $schema = ['type' => self::isNumbered($shape) ? ['array', 'object'] : 'object'] + $schema;
        }

        return $schema;
    }

    /** @return list<string> null and false keep a default from being used */
    private static function printed(Shape $shape): array
    {
        $hasMore = array_any(
            $shape->usages,
            static fn (Usage $usage): bool => $usage->hasDefault || $usage->alternatives !== [],
        );

        return $hasMore ? ['string', 'number'] : ['string', 'number', 'boolean', 'null'];
    }

    private static function isNumbered(Shape $shape): bool
    {
        return array_all(array_keys($shape->keys), static fn (int|string $key): bool => is_int($key));
    }

    /** @return array<string, mixed> */
    private static function properties(Shape $shape): array
    {
        $schema = [];
        $named = array_filter($shape->keys, static fn (int|string $key): bool => $key !== '', ARRAY_FILTER_USE_KEY);
        foreach ($named as $key => $inner) {
            $schema['properties'][$key] = self::value($inner);
        }
        $required = array_filter($named, static fn (Shape $inner): bool => $inner->isRequired());
        if ($required !== [] && !self::isNumbered($shape)) {
            $schema['required'] = array_map(strval(...), array_keys($required));
        }
        if (isset($schema['properties'])) {
            $schema['properties'] = (object) $schema['properties'];
        }

        return $schema;
    }
}

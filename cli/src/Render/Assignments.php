<?php

declare(strict_types=1);

namespace TemplateCli\Render;

use TemplateCli\Json;
use TemplateCli\UsageError;

/** Data given on the command line as key=value, with keys written as in a template. */
final class Assignments
{
    /**
     * @param array<mixed> $data
     * @param list<string> $texts
     * @param list<string> $jsons
     *
     * @return array<mixed>
     */
    public static function apply(array $data, array $texts, array $jsons): array
    {
        foreach ($texts as $assignment) {
            [$path, $value] = self::split($assignment);
            $data = self::with($data, $path, $value);
        }
        foreach ($jsons as $assignment) {
            [$path, $json] = self::split($assignment);
            try {
                $data = self::with($data, $path, Json::value($json));
            } catch (\JsonException $exception) {
                throw new UsageError("The value of \"$assignment\" is not JSON: {$exception->getMessage()}.");
            }
        }

        return $data;
    }

    /** @return array{list<string>, string} */
    private static function split(string $assignment): array
    {
        if (!str_contains($assignment, '=')) {
            throw new UsageError("\"$assignment\" should be key=value.");
        }
        [$key, $value] = explode('=', $assignment, 2);

        return [explode('::', $key), $value];
    }

    /**
     * Not by references into the array: PHP leaves them behind in it, and the engine does not walk through them.
     *
     * @param array<mixed> $data
     * @param non-empty-list<string> $path
     *
     * @return array<mixed>
     */
    private static function with(array $data, array $path, mixed $value): array
    {
        $key = array_shift($path);
        $inner = $data[$key] ?? null;
        $data[$key] = $path === [] ? $value : self::with(is_array($inner) ? $inner : [], $path, $value);

        return $data;
    }
}

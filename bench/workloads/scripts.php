<?php

declare(strict_types=1);

use Bench\Chance;

$names = ['title', 'lead', 'body', 'author', 'city', 'motto', 'offer', 'news', 'tip', 'terms', 'greeting', 'thanks'];

return [
    'template' => "<h1>{title}</h1>\n"
        . \implode('', \array_map(static fn (string $name): string => "<p>{escape $name}.</p>\n", $names))
        . "<ol>\n{each text texts}<li>{escape text}</li>\n{/each}</ol>\n",
    'data' => static function (Chance $chance, int $size) use ($names): array {
        $data = ['texts' => []];
        foreach ($names as $name) {
            $data[$name] = $chance->text($chance->number(20, 400), $chance->script(), 2);
        }
        while (\count($data['texts']) < $size) {
            $data['texts'][] = $chance->text($chance->number(20, 400), $chance->script(), 2);
        }
        return $data;
    },
];

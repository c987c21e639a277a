<?php

declare(strict_types=1);

use Bench\Chance;

return [
    'data' => static function (Chance $chance, int $size): array {
        $shelves = [];
        while (\count($shelves) < $size) {
            $items = [];
            for ($count = $chance->number(10, 30); $count > 0; $count--) {
                $items['P' . $chance->number(1, 1_000_000)] = ['name' => $chance->name(), 'new' => $chance->percent(33)];
            }
            $shelves[] = ['title' => $chance->name(), 'items' => $items];
        }
        return ['shelves' => $shelves];
    },
];

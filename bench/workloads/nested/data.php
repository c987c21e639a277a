<?php

declare(strict_types=1);

return static function (int $groups = 100): array {
    $colours = ['red & gold', 'ultramarine', 'ochre', 'umber', 'ivory "black"', 'vermilion', 'teal'];
    $shelves = [];
    for ($g = 0; $g < $groups; $g++) {
        $items = [];
        for ($i = 0; $i < 20; $i++) {
            $items['P' . ($g * 20 + $i)] = [
                'name' => $colours[($g + $i) % 7] . ', pigment ' . $i,
                'new' => ($g + $i) % 3 === 0,
            ];
        }
        $shelves[] = ['title' => 'Shelf ' . $g, 'items' => $items];
    }
    return ['shelves' => $shelves];
};

<?php
echo template(__DIR__ . '/menu.html.tpl', [
    'title' => 'Fish & chips',
    'dishes' => [
        ['name' => 'Cod', 'price' => '9.50'],
        ['name' => 'Catch of the day'],
    ],
]);

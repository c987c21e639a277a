<?php
return [
    'page' => ['name' => 'O\'Neil\'s "page"', 'path' => 'C:\\pages'],
    'rows' => [['id' => 7, 'label' => 'it\'s'], ['id' => 8, 'label' => 'a\\b"c'], ['id' => 9]],
];

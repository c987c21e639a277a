<?php

declare(strict_types=1);

return static fn (): array => [
    'title' => 'Making ochre & umber at home',
    'site' => 'The Pigment Shop',
    'city' => 'Harbour Town',
    'user' => 'Ada Lovelace',
    'topic' => 'Workshop',
    'author' => 'Maria "Mia" Rossi',
    'date' => '14 March 2026',
    'phone' => '+49 30 5550 123',
    'mail' => 'workshop@shop.example',
    'offer' => 'Green earth from Verona',
    'price' => '12.80 EUR',
    'year' => '2026',
];

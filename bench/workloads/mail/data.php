<?php

declare(strict_types=1);

return static fn (): array => [
    'customerName' => 'Ada Lovelace',
    'orderNumber' => '2026-01842',
    'orderDate' => '14 March 2026',
    'articleCount' => '3',
    'orderTotal' => '48.50 EUR',
    'carrierName' => 'Post',
    'deliveryDays' => '2 to 3',
    'senderName' => 'The Pigment Shop',
];

<?php

declare(strict_types=1);

use Bench\Chance;

return [
    'template' => <<<'TEXT'
        Dear {customerName},

        thank you for your order {orderNumber} of {orderDate}. We have received your
        payment and packed the {articleCount} articles that you chose, {orderTotal} in all.

        Your parcel leaves our house tomorrow with {carrierName} and will reach you in
        {deliveryDays} working days. Should something be missing or broken, answer this
        message within two weeks, and we send a new one at our cost. You find the
        invoice and the terms of sale in your customer account, where you can also
        follow the way of your parcel.

        Kind regards from all of us
        {senderName}, Harbour Street 12

        TEXT,
    'data' => static fn (Chance $chance): array => [
        'customerName' => $chance->name(),
        'orderNumber' => '2026-' . $chance->number(1, 99_999),
        'orderDate' => $chance->number(1, 31) . ' March 2026',
        'articleCount' => (string) $chance->number(2, 20),
        'orderTotal' => \number_format($chance->number(100, 99_999) / 100, 2) . ' EUR',
        'carrierName' => $chance->word(),
        'deliveryDays' => '2 to ' . $chance->number(3, 9),
        'senderName' => $chance->name(),
    ],
];

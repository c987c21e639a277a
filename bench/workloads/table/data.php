<?php

declare(strict_types=1);

// Escaped fields hold no apostrophe: the escapers of the engines agree about every other byte.
return static function (int $rows = 1000): array {
    $names = ['Ada Lovelace', 'Jürgen <Jo> Weiß', 'Nils & Söhne', 'Ching-Ning Zhu', 'Maria "Mia" Rossi'];
    $notes = ['paid by invoice', 'call back > 5 pm', 'ships with our R&D samples', 'asked for 3" tubes', 'a new address since May'];
    $states = ['open', 'paid', 'late', 'sent'];
    $table = [];
    for ($i = 0; $i < $rows; $i++) {
        $table[] = [
            'id' => 10_000 + $i,
            'state' => $states[$i % 4],
            'name' => $names[$i % 5],
            'mail' => 'customer.' . $i . '@example.org',
            'note' => $notes[$i % 5],
            'amount' => \number_format(($i * 7919 % 100_000) / 100, 2),
        ];
    }
    return ['title' => 'Orders', 'rows' => $table];
};

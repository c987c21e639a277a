<?php

/** Writes rows for invoice.tpl, one JSON object a line: php rows.php COUNT. The same in each run. */

declare(strict_types=1);

mt_srand(2);
$names = ['Ann', 'Bo', 'Chloé', 'Дмитрий', 'Eve', 'O\'Neil', '山田', 'Fay & Sons'];
$articles = ['Atlas', 'Cookbook', 'Dictionary', 'Novel', 'Bird guide', 'Poems'];
for ($number = 1; $number <= (int) ($argv[1] ?? 10); ++$number) {
    [$lines, $total] = [[], 0];
    for ($count = mt_rand(0, 4); $count > 0; --$count) {
        [$quantity, $cents] = [mt_rand(1, 3), mt_rand(500, 5000)];
        $lines[] = [
            'article' => $articles[array_rand($articles)],
            'quantity' => $quantity,
            'price' => sprintf('%.2f', $cents / 100),
            'gift' => mt_rand(0, 9) === 0,
        ];
        $total += $quantity * $cents;
    }
    echo json_encode([
        'number' => $number,
        'name' => $names[array_rand($names)],
        'city' => mt_rand(0, 3) > 0 ? 'Lyon' : '',
        'vip' => mt_rand(0, 9) === 0,
        'lines' => $lines,
        'total' => sprintf('%.2f', $total / 100),
    ], JSON_UNESCAPED_UNICODE), "\n";
}

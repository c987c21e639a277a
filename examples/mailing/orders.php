<?php

/** Makes up orders, the same ones each time: mails with address and data, by number. */

declare(strict_types=1);

const NAMES = ['Ann', 'Bo', 'Chloé', 'Дмитрий', 'Eve', 'O\'Neil', '山田', 'Fay & Sons'];
const ARTICLES = ['Atlas', 'Cookbook', 'Dictionary', 'Novel', 'Bird guide', 'Poems'];

/** @param int $faulty every so many mails, one gets an offer whose template includes itself; 0 for none */
return function (int $count, int $faulty): iterable {
    for ($id = 1; $id <= $count; ++$id) {
        $articles = array_map(fn (int $n) => [
            'title' => ARTICLES[($id * 7 + $n) % count(ARTICLES)],
            'quantity' => 1 + $n % 2,
            'gift' => ($id + $n) % 10 === 0,
        ], range(1, 1 + $id % 4));
        yield $id => ["customer$id@example.org", [
            'number' => $id,
            'name' => NAMES[$id % count(NAMES)],
            'articles' => $articles,
            'offer' => 'offers/' . ($faulty > 0 && $id % $faulty === 0 ? 'postage.txt.tpl' : 'voucher.txt.tpl'),
        ]];
    }
};

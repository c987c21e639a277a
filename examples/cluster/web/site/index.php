<?php

declare(strict_types=1);

// nginx hands over the real path of this file, so __DIR__ is the folder of one release, whatever "current" names by now:
// the page and all that it includes come from the same release.
chdir(__DIR__);

if ($_SERVER['REQUEST_URI'] === '/health') {
    // By the engine, so that a host where it does not work gets no requests.
    exit(template('{state}', ['state' => 'ready'], true));
}

$books = [];
for ($number = 1; $number <= 30; ++$number) {
    $books[] = ['title' => "Book <$number>", 'price' => sprintf('%.2f', 9 + $number / 4), 'new' => $number % 7 === 0];
}
echo template('page.tpl', ['books' => $books, 'header' => 'header.tpl', 'footer' => 'footer.tpl']);

<?php
declare(strict_types=1);

/*
 * A small site: a list of books, a page for each, and the mail that answers an order.
 *
 *     php -S 127.0.0.1:8001 examples/books/index.php     then open http://127.0.0.1:8001/
 *     php examples/books/index.php /book/emma            prints one page
 */

set_include_path(__DIR__ . '/templates');   // where templates, and what they include, are looked for

const BOOKS = [
    'emma' => ['title' => 'Emma', 'author' => 'Jane Austen', 'price' => 8.5, 'tags' => ['novel', 'matchmaking']],
    'beowulf' => ['title' => 'Beowulf', 'price' => 12.0, 'tags' => []],
    'middlemarch' => ['title' => 'Middlemarch & more', 'author' => 'George Eliot', 'tags' => ['novel'], 'about' => "Two volumes.\n\nBound in <blue>."],
];

/** A page in the layout, which includes the template that "content" names. */
function page(string $content, string $title, array $data): string
{
    return render('layout.html.tpl', ['content' => $content, 'title' => $title, 'year' => date('Y')] + $data);
}

function render(string $template, array $data): string
{
    return template($template, $data) ?? throw new RuntimeException("$template is at fault: the warning says why");
}

/** What templates show of a book: texts, and answers to their questions. What a book lacks, they have a default for. */
function for_template(string $id, array $book): array
{
    $price = isset($book['price']) ? ['price' => number_format($book['price'], 2)] : [];
    $about = isset($book['about']) ? ['paragraphs' => explode("\n\n", $book['about'])] : [];
    return $price + $about + ['id' => $id, 'cheap' => ($book['price'] ?? INF) < 10] + $book;
}

$books = array_map(for_template(...), array_keys(BOOKS), BOOKS);
[, $kind, $id] = explode('/', $_SERVER['REQUEST_URI'] ?? $argv[1] ?? '/') + ['', '', ''];
$book = array_find($books, fn (array $book): bool => $book['id'] === $id);

[$status, $type, $text] = match (true) {
    $kind === '' => [200, 'html', page('list.html.tpl', 'Books', ['books' => $books])],
    $kind === 'book' && $book !== null => [200, 'html', page('book.html.tpl', $book['title'], ['book' => $book])],
    $kind === 'order' && $book !== null => [200, 'plain', render('order.txt.tpl', ['book' => $book, 'name' => 'Ann'])],
    default => [404, 'html', page('missing.html.tpl', 'Not found', [])],
};
http_response_code($status);
header("Content-Type: text/$type; charset=utf-8");
echo $text;

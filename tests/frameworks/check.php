<?php
/** The view adapters of examples/frameworks in the frameworks that they are for. */

declare(strict_types=1);

require __DIR__ . '/../lib/harness.php';
require __DIR__ . '/symfony.php';
require __DIR__ . '/laravel.php';

$scratch = sys_get_temp_dir() . '/frameworks-' . getmypid();
register_shutdown_function(remove_tree(...), $scratch);

/** A copy of an example, with some files added or replaced. */
function scratch_copy(string $example, array $files): string
{
    static $copies = 0;
    $copy = $GLOBALS['scratch'] . '/' . $copies++;
    mkdir($copy, 0700, true);
    exec('cp -R ' . escapeshellarg("$example/.") . ' ' . escapeshellarg($copy));
    foreach ($files as $name => $content) {
        file_put_contents("$copy/$name", $content);
    }
    return $copy;
}

/** What is thrown, without the folders of the files that it names. */
function thrown(callable $function): string
{
    try {
        $function();
    } catch (Throwable $thrown) {
        return get_class($thrown->getPrevious() ?? $thrown) . ': ' . preg_replace('~/\S*/~', '', $thrown->getMessage());
    }
    return 'nothing';
}

$page = <<<'HTML'
    <!DOCTYPE html>
    <title>Books</title>

    <h1>Books about R&amp;D</h1>
    <ul>
    <li>Emma, Jane Austen (1815)</li>
    <li>Crime &amp; Punishment, Fyodor Dostoevsky</li>
    </ul>

    HTML;
$broken = "{dynamic book,books}{book::*::title}";
$includePath = get_include_path();

$books = collect([
    ['title' => 'Emma', 'author' => 'Jane Austen', 'year' => 1815],
    collect(['title' => 'Crime & Punishment', 'author' => 'Fyodor Dostoevsky']),
]);
check('Laravel: a page, of collections', differences($page, laravel_views()->make('books', ['tag' => 'R&D', 'books' => $books])->render()));
$views = laravel_views(['resources/views/in.html.tpl' => "<b>in</b>\n", 'resources/views/out.html.tpl' => '{part}|{include in.html.tpl}']);
check('Laravel: a view in a view', differences("<b>in</b>\n|<b>in</b>\n", $views->make('out', ['part' => $views->make('in')])->render()));
check('Laravel: a fault is an exception', differences('ErrorException: Missing closing tag in books.html.tpl',
    thrown(fn () => laravel_views(['resources/views/books.html.tpl' => $broken])->make('books', ['books' => []])->render())));

// Last, as its kernel takes over the handling of errors.
$response = symfony_book_page('/books/R&D');
check('Symfony: a page', differences([200, 'text/html; charset=UTF-8', $page],
    [$response->getStatusCode(), $response->headers->get('Content-Type'), $response->getContent()]));
check('Symfony: a fault is an exception', differences('ErrorException: Missing closing tag in books.html.tpl',
    thrown(fn () => symfony_book_page('/books/x', ['templates/books.html.tpl' => $broken]))));
check('Symfony: an array in the text is one, too', differences('ErrorException: Array to string conversion',
    thrown(fn () => symfony_book_page('/books/x', ['templates/books.html.tpl' => '{books}']))));

check('the include path is what it was', differences($includePath, get_include_path()));

echo "$passed passed, $failed failed\n";
exit($failed === 0 ? 0 : 1);

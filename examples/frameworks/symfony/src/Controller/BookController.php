<?php

declare(strict_types=1);

namespace App\Controller;

use App\View\TemplateView;
use Symfony\Component\HttpFoundation\Response;
use Symfony\Component\Routing\Attribute\Route;

final class BookController
{
    #[Route('/books/{tag}')]
    public function list(string $tag, TemplateView $view): Response
    {
        return $view->response('books.html.tpl', [
            'tag' => $tag,
            'books' => [
                ['title' => 'Emma', 'author' => 'Jane Austen', 'year' => 1815],
                ['title' => 'Crime & Punishment', 'author' => 'Fyodor Dostoevsky'],
            ],
        ]);
    }
}

<?php
declare(strict_types=1);

use TemplateCli\Language\Reader;

require_once __DIR__ . '/../cli/autoload.php';

/**
 * A template cut where its tags begin and end, so that a page can show them in colour.
 *
 * @return list<array{text: string}|array{open: string, keyword: string, rest: string}>
 */
function pieces_of_template(string $template): array
{
    $pieces = [];
    $done = 0;
    $reader = new Reader($template);
    while (($tag = $reader->next()) !== null) {
        $pieces[] = ['text' => substr($template, $done, $tag->start - $done)];
        $keyword = $tag->keyword->value;
        $rest = $tag->start + 1 + strlen($keyword);
        $pieces[] = ['open' => '{', 'keyword' => $keyword, 'rest' => substr($template, $rest, $tag->end - $rest)];
        $done = $tag->end;
    }
    $pieces[] = ['text' => substr($template, $done)];
    return $pieces;
}

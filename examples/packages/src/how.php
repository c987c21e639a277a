<?php
declare(strict_types=1);

/*
 * The pages that tell how the others are made: the templates of a page beside the data that it was made of. What is long
 * is cut, so that the shape of the data shows.
 */

require __DIR__ . '/../../highlight.php';

const SHOWN_ENTRIES = 2;
const SHOWN_LETTERS = 60;

/** @return array<string, array> the data of the pages, by the names that the others lead to */
function how_pages(array $catalogue): array
{
    $of = fn (string $name, string $template, array $data): array => how_page($name, $template, template_source($template), $data);
    return [
        'index' => $of('the list of sections', 'index.html.tpl', index_page($catalogue)),
        'section' => $of('the page of a section', 'section.html.tpl', section_page($catalogue, 0)),
        'maintainers' => $of('the list of maintainers', 'maintainers.html.tpl', maintainers_page($catalogue)),
    ] + ($catalogue['maintainers'] ? ['mail' => how_page('a mail', 'MAIL in src/mail.php', MAIL, maintainer_mail($catalogue, 0))] : []);
}

function template_source(string $name): string
{
    return file_get_contents(__DIR__ . "/../templates/$name");
}

/** For how.html.tpl: how a page is made of a template, which is given as text, and data. */
function how_page(string $name, string $template, string $text, array $data): array
{
    return [
        'root' => '../',
        'page' => 'how',
        'title' => "How $name is made",
        'call' => $template,
        'files' => [['name' => $template, 'pieces' => pieces_of_template($text)], ...included_files($text)],
        'data' => json_encode(shortened($data), JSON_PRETTY_PRINT | JSON_UNESCAPED_UNICODE | JSON_UNESCAPED_SLASHES | JSON_INVALID_UTF8_SUBSTITUTE),
    ];
}

/** @return list<array{name: string, pieces: list<array>}> what a template includes, by the names in its tags */
function included_files(string $template): array
{
    preg_match_all('/\{include ([^{}]+)\}/', $template, $names);
    $files = [];
    foreach (array_unique($names[1]) as $name) {
        $text = template_source($name);
        array_push($files, ['name' => $name, 'pieces' => pieces_of_template($text)], ...included_files($text));
    }
    return $files;
}

/** The first entries of each list, and the beginning of each text. Rows with names for their parts are left whole. */
function shortened(mixed $value): mixed
{
    if (is_string($value)) {
        return preg_replace('/^(.{' . SHOWN_LETTERS . '}).+$/su', '$1…', $value) ?? $value;   // null: it is not UTF-8
    }
    if (!is_array($value)) {
        return $value;
    }
    $left = count($value) - SHOWN_ENTRIES;
    $isList = array_is_list($value) || count(array_filter($value, is_array(...))) === count($value);
    if (!$isList || $left <= 0) {
        return array_map(shortened(...), $value);
    }
    $first = array_map(shortened(...), array_slice($value, 0, SHOWN_ENTRIES, true));
    return array_is_list($value) ? [...$first, "… $left more"] : $first + ['…' => "$left more"];
}

<?php
declare(strict_types=1);

/**
 * The examples of gallery.md: chapters are its headings of the second level, examples those of the third.
 *
 * @return list<array{title: string, examples: list<array{slug: string, title: string, about: string, template: string,
 *     data: string, output?: string, warning?: string}>}>
 */
function read_gallery(): array
{
    $text = file_get_contents(__DIR__ . '/../gallery.md');
    $chapters = [];
    foreach (array_slice(preg_split('/^## /m', $text), 1) as $chapter) {
        [$title, $examples] = explode("\n", $chapter, 2);
        $examples = array_slice(preg_split('/^### /m', $examples), 1);
        $chapters[] = ['title' => $title, 'examples' => array_map(read_example(...), $examples)];
    }
    return $chapters;
}

/** An example without its "### ": a title, a sentence, and fenced blocks. */
function read_example(string $text): array
{
    [$title, $rest] = explode("\n", $text, 2);
    preg_match_all('/^```(\w+)\n(.*?)\n?^```$/ms', $rest, $blocks);
    $about = preg_split('/^```/m', $rest, 2)[0];
    return [
        'slug' => slug($title),
        'title' => $title,
        'about' => trim(preg_replace('/\s+/', ' ', $about)),
    ] + array_combine($blocks[1], $blocks[2]) + ['data' => '{}'];
}

/** @return list<array> the examples of all chapters, in order */
function all_examples(array $chapters): array
{
    return array_merge(...array_column($chapters, 'examples'));
}

function slug(string $title): string
{
    return trim(preg_replace('/[^a-z0-9]+/', '-', strtolower($title)), '-');
}

<?php
declare(strict_types=1);

/** The data of the pages, one function for each template. Null: there is no such page. */

function playground_page(array $chapters, mixed $slug): ?array
{
    $examples = array_column(all_examples($chapters), null, 'slug');
    $slug ??= array_key_first($examples);
    if (!is_string($slug) || !isset($examples[$slug])) {
        return null;
    }
    // not by reference: a template's path does not lead through what foreach ($a as &$b) leaves behind
    foreach ($chapters as $at => $chapter) {
        foreach ($chapter['examples'] as $place => $example) {
            $chapters[$at]['examples'][$place]['selected'] = $example['slug'] === $slug;
        }
    }
    $known = array_map(fn (array $example): array => [
        'template' => $example['template'],
        'data' => $example['data'],
        'about' => about_html($example['about']),
    ], $examples);
    return [
        'title' => 'Template playground',
        'page' => 'playground',
        'chapters' => $chapters,
        'template' => $examples[$slug]['template'],
        'data' => $examples[$slug]['data'],
        'about' => $known[$slug]['about'],
        'files' => includable_files(),
        // in a script element: no "<" may end it
        'examples' => json_encode($known, JSON_HEX_TAG | JSON_UNESCAPED_UNICODE | JSON_UNESCAPED_SLASHES | JSON_THROW_ON_ERROR),
    ];
}

function gallery_page(array $chapters): array
{
    foreach ($chapters as $at => $chapter) {
        $chapters[$at]['slug'] = slug($chapter['title']);
        foreach ($chapter['examples'] as $place => $example) {
            $chapters[$at]['examples'][$place]['about'] = about_html($example['about']);
            if ($example['data'] === '{}') {
                unset($chapters[$at]['examples'][$place]['data']);
            }
        }
    }
    return ['title' => 'Gallery', 'page' => 'gallery', 'chapters' => $chapters, 'count' => count(all_examples($chapters))];
}

function missing_page(): array
{
    return ['title' => 'Nothing here', 'page' => 'missing'];
}

/** @return list<array{name: string, text: string}> */
function includable_files(): array
{
    return array_map(
        fn (string $file): array => ['name' => basename($file), 'text' => file_get_contents($file)],
        glob(__DIR__ . '/../includes/*.tpl'),
    );
}

/** A sentence of the gallery; `…` is code. */
function about_html(string $about): string
{
    return preg_replace('/`([^`]*)`/', '<code>$1</code>', htmlspecialchars($about));
}

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
        'editor' => is_bundled() ? '/bundle/editor.js' : '/areas.js',
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
            $chapters[$at]['examples'][$place]['pieces'] = pieces_of_template($example['template']);
            if ($example['data'] === '{}') {
                unset($chapters[$at]['examples'][$place]['data']);
            }
        }
    }
    return ['title' => 'Gallery', 'page' => 'gallery', 'chapters' => $chapters, 'count' => count(all_examples($chapters))];
}

/** For /manual/NAME.md. */
function manual_page(string $path): ?array
{
    $sections = str_starts_with($path, '/manual/') ? manual_sections(substr($path, strlen('/manual/'))) : null;
    return $sections === null ? null : [
        'title' => $sections[0]['title'],
        'page' => 'manual',
        'bundled' => is_bundled(),
        'sections' => $sections,
    ];
}

/** Whether ./dev serve could have packages from npm. */
function is_bundled(): bool
{
    return is_file(BUNDLE . '/editor.js');
}

function missing_page(): array
{
    return ['title' => 'Nothing here', 'page' => 'missing'];
}

/** @return list<array{name: string, pieces: list<array>}> */
function includable_files(): array
{
    return array_map(
        fn (string $file): array => ['name' => basename($file), 'pieces' => pieces_of_template(file_get_contents($file))],
        glob(__DIR__ . '/../includes/*.tpl'),
    );
}

/** A sentence of the gallery; `…` is code. */
function about_html(string $about): string
{
    return preg_replace('/`([^`]*)`/', '<code>$1</code>', htmlspecialchars($about));
}

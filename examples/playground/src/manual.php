<?php
declare(strict_types=1);

/** The manual: its pages, cut at their headings, and the place that explains a message. */

const MANUAL = __DIR__ . '/../../../docs';
const HINTS_PAGE = '/manual/cli.md#hints';
const CHECK_PAGE = '/manual/cli.md#check-data-against-a-template';
const DATA_PAGE = '/manual/playground.md#the-data';
const LIMITS_PAGE = '/manual/playground.md#what-a-strangers-template-can-do';

/** The heading of messages.md that a message begins with; "…" in it stands for anything. Other messages are of limits. */
function page_about(string $message): string
{
    foreach (manual_sections('messages.md') ?? [] as ['id' => $id, 'title' => $title]) {
        $pattern = implode('.*', array_map(fn (string $part): string => preg_quote($part, '/'), explode('…', $title)));
        if ($title !== '' && preg_match("/^$pattern/s", $message)) {
            return "/manual/messages.md#$id";
        }
    }
    return LIMITS_PAGE;
}

/**
 * @return list<array{id: string, title: string, text: string}>|null a page of the manual, each heading with what is below
 *     it; null: there is no such page
 */
function manual_sections(string $name): ?array
{
    if (!preg_match('/^[a-z]+\.md$/D', $name) || !is_file(MANUAL . "/$name")) {
        return null;
    }
    $sections = [];
    $inCode = false;
    foreach (file(MANUAL . "/$name") as $line) {
        $inCode = $inCode !== str_starts_with($line, '```');
        if ($sections === [] || !$inCode && preg_match('/^#+ /', $line)) {
            $title = trim(ltrim($line, '#'));
            $sections[] = ['id' => heading_id($title), 'title' => $title, 'text' => ''];
        }
        $sections[array_key_last($sections)]['text'] .= $line;
    }
    return $sections;
}

/** As code hosts make it. */
function heading_id(string $title): string
{
    return str_replace(' ', '-', preg_replace('/[^\w\- ]/u', '', strtolower(str_replace('`', '', $title))));
}

<?php
/** Links between the documents: the file must be there, and the heading in it. */

declare(strict_types=1);

/** @return iterable<array{int, string}> line and target of each link that leads to a file of ours */
function links_in(string $markdown): iterable
{
    // What stands in fences and in code is no link.
    $blank = fn (array $match) => preg_replace('/[^\n]/', ' ', $match[0]);
    $prose = preg_replace_callback('/^ *(`{3,})[^\n]*\n.*?^ *\1`*\s*$|`[^`\n]*`/ms', $blank, $markdown);
    preg_match_all('/\]\(([^)\s]+)\)/', $prose, $matches, PREG_SET_ORDER | PREG_OFFSET_CAPTURE);
    foreach ($matches as $match) {
        if (!preg_match('/^[a-z]+:/', $match[1][0])) {
            yield [substr_count($markdown, "\n", 0, $match[1][1]) + 1, $match[1][0]];
        }
    }
}

function link_fault(string $from, string $target): ?string
{
    [$path, $anchor] = explode('#', $target, 2) + [1 => ''];
    $path = $path === '' ? $from : dirname($from) . '/' . $path;
    if (!file_exists($path)) {
        return "there is nothing at $target";
    }
    if ($anchor !== '' && !in_array($anchor, anchors_in(file_get_contents($path)), true)) {
        return "there is no heading for $target";
    }
    return null;
}

/** The anchors that code hosts make of headings. */
function anchors_in(string $markdown): array
{
    $anchors = [];
    foreach (blocks_in($markdown) as [, $info, $text]) {
        if ($info === '#') {
            $anchors[] = str_replace(' ', '-', preg_replace('/[^\w\- ]/u', '', strtolower(str_replace('`', '', $text))));
        }
    }
    return $anchors;
}

<?php
/**
 * The template language as the text of a man page: docs/language.md, in the form that man pages have.
 *
 *     php tools/lib/man.php docs/language.md > template.7.md
 */

declare(strict_types=1);

/** What stands before a block of an example, by what its fence says. */
const LABELS = ['template' => 'Template', 'data' => 'Data', 'output' => 'Output', 'warning' => 'Warning', 'php' => 'Program'];

$page = '';
$isCode = false;
foreach (file($argv[1], FILE_IGNORE_NEW_LINES) as $line) {
    if (preg_match('/^```(\w*) ?(.*)$/', $line, $match)) {
        $isCode = !$isCode;
        $page .= $isCode && isset(LABELS[$match[1]]) ? label($match[1], $match[2]) . "\n\n$line\n" : "$line\n";
    } elseif ($isCode) {
        $page .= "$line\n";
    } else {
        $page .= preg_replace_callback('/^#(#+) (.*)/', heading(...), $line) . "\n";
    }
}

// The name of the page takes the place of its title; a table of contents is of no use there.
$page = preg_replace('/\A# .*\n/', "# NAME\n\ntemplate - the template language of the PHP function template()\n\n# DESCRIPTION\n", $page);
$page = preg_replace('/^\*\*Contents:\*\*\n.*?\n\n/ms', '', $page);
echo without_links($page), "\n# SEE ALSO\n\n**template**(1)\n";

function label(string $kind, string $name): string
{
    $name = in_array($name, ['fragment', 'php'], true) ? '' : $name;
    return '*' . LABELS[$kind] . ($name === '' ? '' : " $name") . ':*';
}

/** A level up, as the title is none; the uppermost in capitals. */
function heading(array $match): string
{
    return "$match[1] " . ($match[1] === '#' ? strtoupper($match[2]) : $match[2]);
}

/** A link is its text; those to other documents name them. */
function without_links(string $page): string
{
    return preg_replace_callback('/\[((?:[^\[\]`]|`[^`]*`)+)\]\(([^)\s]+)\)/', fn (array $link) => $link[1], $page);
}

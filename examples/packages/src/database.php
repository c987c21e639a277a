<?php
declare(strict_types=1);

/*
 * Reading dpkg's status file: paragraphs of "Field: value" lines, one paragraph a package, with a blank line between
 * two. A line that begins with a blank continues the field above it.
 */

/**
 * Reads all packages, in the order of the file.
 *
 * @param resource $file
 * @return iterable<array<string, string>> fields by their names in lower case; the lines of a long field are joined
 *                                         by line feeds, each with its first blank taken off
 */
function read_packages($file): iterable
{
    $fields = [];
    $name = '';
    while (($line = fgets($file)) !== false) {
        $line = rtrim($line);
        if ($line === '') {
            if (isset($fields['package'])) {
                yield $fields;
            }
            $fields = [];
            $name = '';
        } elseif ($line[0] === ' ' || $line[0] === "\t") {
            if ($name !== '') {
                $fields[$name] .= "\n" . clean_text(substr($line, 1));
            }
        } elseif (preg_match('/^([!-9;-~]+):\s*(.*)$/', $line, $part)) {
            $name = strtolower($part[1]);
            $fields[$name] = clean_text($part[2]);
        }
    }
    if (isset($fields['package'])) {
        yield $fields;
    }
}

/**
 * Makes a line fit for a page: it has to be UTF-8 (old entries are Latin-1 at times), and control characters have no
 * place in HTML. The engine leaves both to its caller: an htmlspecialchars tag over a top-level value prints nothing
 * when the value is not valid in the default charset, and a value ends at its first NUL byte.
 */
function clean_text(string $line): string
{
    if (!preg_match('//u', $line)) {
        $line = preg_replace_callback('/[\x80-\xff]/', fn($byte) => latin1_character(ord($byte[0])), $line);
    }
    return preg_replace('/[\x{0}-\x{8}\x{b}-\x{1f}\x{7f}-\x{9f}\x{fdd0}-\x{fdef}\x{fffe}\x{ffff}]/u', '', $line);
}

/** A Latin-1 character above 127 in UTF-8. */
function latin1_character(int $code): string
{
    return chr(0xc0 | $code >> 6) . chr(0x80 | $code & 0x3f);
}

/**
 * Takes a dependency field apart, as in "libc6 (>= 2.38), default-mta | mail-transport-agent".
 *
 * @return list<list<array{name: string, version?: string}>> the groups, of which all are wanted; in each the
 *                                                           alternatives, of which one will do
 */
function parse_relations(string $field): array
{
    $groups = [];
    foreach (explode(',', $field) as $group) {
        $alternatives = array_map(parse_relation(...), explode('|', $group));
        $alternatives = array_values(array_filter($alternatives, fn($alternative) => $alternative['name'] !== ''));
        if ($alternatives) {
            $groups[] = $alternatives;
        }
    }
    return $groups;
}

/** @return array{name: string, version?: string} such as name "libc6", version "≥ 2.38" */
function parse_relation(string $text): array
{
    $text = trim($text);
    if (!preg_match('/^([^\s:()]+)(?::[\w-]+)?\s*(?:\(\s*([<>=]+)\s*([^\s)]+)\s*\))?$/', $text, $part)) {
        return ['name' => $text];
    }
    $relation = ['name' => $part[1]];
    if (isset($part[3])) {
        $signs = ['>=' => '≥', '<=' => '≤', '>>' => '>', '<<' => '<'];
        $relation['version'] = ($signs[$part[2]] ?? $part[2]) . ' ' . $part[3];
    }
    return $relation;
}

/**
 * Splits a description: its first line is a summary; then lines of flowing text make a paragraph, "." stands for an
 * empty line, and lines that are indented further keep their shape.
 *
 * @return array{string, list<array{kind: 'text'|'verbatim', text: string}>}
 */
function parse_description(string $field): array
{
    $lines = explode("\n", $field);
    $summary = array_shift($lines);
    $blocks = [];
    $last = '';
    foreach ($lines as $line) {
        if (trim($line) === '' || trim($line) === '.') {
            $last = '';
            continue;
        }
        $kind = $line[0] === ' ' || $line[0] === "\t" ? 'verbatim' : 'text';
        if ($kind === $last) {
            $blocks[array_key_last($blocks)]['text'] .= "\n" . $line;
        } else {
            $blocks[] = ['kind' => $kind, 'text' => $line];
            $last = $kind;
        }
    }
    return [$summary, $blocks];
}

/** @return array{name?: string, address?: string} the two halves of "Ada Lovelace <ada@example.org>" */
function parse_person(string $field): array
{
    if (!preg_match('/^(.*?)\s*<([^<>]*)>$/', $field, $part)) {
        return ['name' => $field];
    }
    // Some organisations give a web address where a mail address belongs.
    return array_filter([
        'name' => trim($part[1], ' "'),
        'address' => preg_match('/^[^@\s]+@[^@\s]+$/', $part[2]) ? $part[2] : '',
    ]) ?: ['name' => $field];
}

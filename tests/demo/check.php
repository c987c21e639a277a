<?php
declare(strict_types=1);

/*
 * Renders the demo's site and reads it back. The database is read here once more, by other means than the demo's, so
 * that a page is compared with the database and not with the demo's idea of it.
 */

$passed = $failed = 0;

/** Reports a check: it holds when there is nothing to complain about. */
function check(string $what, iterable $complaints): void
{
    global $passed, $failed;
    $complaints = [...$complaints];
    $complaints ? $failed++ : $passed++;
    echo $complaints ? 'FAIL ' : 'ok   ', $what, "\n";
    foreach (array_slice($complaints, 0, 10) as $complaint) {
        echo "       $complaint\n";
    }
}

/** Complains about every place where two lists or values differ. */
function differences(mixed $expected, mixed $actual, string $where = ''): iterable
{
    if (is_array($expected) && is_array($actual)) {
        foreach ($expected + $actual as $key => $_) {
            yield from differences($expected[$key] ?? null, $actual[$key] ?? null, "$where/$key");
        }
    } elseif ($expected !== $actual) {
        yield "$where: expected " . json_encode($expected, 320 | JSON_INVALID_UTF8_SUBSTITUTE) . ', got ' . json_encode($actual, 320 | JSON_INVALID_UTF8_SUBSTITUTE);
    }
}

/** Runs a command and returns its exit status, output and error output. */
function run(array $command, array $streams = [1 => ['pipe', 'w'], 2 => ['pipe', 'w']]): array
{
    $process = proc_open($command, [['file', '/dev/null', 'r']] + $streams, $pipes);
    $texts = array_map(stream_get_contents(...), $pipes);
    return [proc_close($process), $texts[1] ?? '', $texts[2] ?? ''];
}

function php(string ...$arguments): array
{
    return [PHP_BINARY, '-n', '-d', 'extension=' . getenv('TEMPLATE_SO'), ...$arguments];
}

function render(string $database, string $folder): array
{
    return run(php('examples/packages/site.php', $database, $folder));
}

function remove_tree(string $folder): void
{
    foreach (is_dir($folder) ? array_diff(scandir($folder), ['.', '..']) : [] as $name) {
        is_dir("$folder/$name") ? remove_tree("$folder/$name") : unlink("$folder/$name");
    }
    @rmdir($folder);
}

/** The text of a page's element, or of a database's field: what counts is the words. */
function words(string $text): string
{
    return trim(preg_replace('/[ \t\n]+/', ' ', $text));
}

/** @return list<array<string, string>> the paragraphs of a database; the lines of a field as they are */
function paragraphs(string $database): array
{
    $paragraphs = [];
    foreach (preg_split('/\n\n+/', file_get_contents($database), -1, PREG_SPLIT_NO_EMPTY) as $paragraph) {
        $paragraph = implode("\n", array_map(readable(...), explode("\n", $paragraph)));
        preg_match_all('/^(\S+?):[ \t]*(.*(?:\n[ \t].*)*)/m', $paragraph, $fields);
        $paragraphs[] = array_combine($fields[1], $fields[2]);
    }
    return $paragraphs;
}

/** A line in UTF-8, without what HTML has no place for. */
function readable(string $line): string
{
    $line = mb_check_encoding($line, 'UTF-8') ? $line : mb_convert_encoding($line, 'UTF-8', 'ISO-8859-1');
    return str_replace(["\x00", "\x07"], '', $line);
}

/** A site that was rendered, read back, beside the database that it was made of. */
final class Site
{
    /** @var array<string, Dom\HTMLDocument> by file name */
    public array $pages = [];
    /** @var array<string, string> by file name */
    public array $mails = [];
    /** @var list<array<string, string>> */
    public array $packages;

    public function __construct(public readonly string $folder, string $database)
    {
        $this->packages = paragraphs($database);
        foreach ([...glob("$folder/*.html"), ...glob("$folder/sections/*.html")] as $file) {
            $this->pages[substr($file, strlen($folder) + 1)] = Dom\HTMLDocument::createFromFile($file, LIBXML_NOERROR);
        }
        foreach (glob("$folder/mails/*.txt") as $file) {
            $this->mails[basename($file)] = file_get_contents($file);
        }
    }

    /** What two validators have to say about the pages. */
    public function invalid(): iterable
    {
        libxml_use_internal_errors(true);
        foreach ($this->pages as $name => $_) {
            $file = "$this->folder/$name";
            Dom\HTMLDocument::createFromFile($file);
            foreach (libxml_get_errors() as $error) {
                yield "$name:$error->line: " . trim($error->message);
            }
            libxml_clear_errors();
            [$status, , $complaints] = run(['tidy', '-errors', '-quiet', '-utf8', '--drop-empty-elements', 'no', $file]);
            foreach (explode("\n", trim($complaints)) as $complaint) {
                if ($complaint !== '' && !str_contains($complaint, 'attribute "aria-current"')) {   // which tidy does not know
                    yield "$name: $complaint";
                }
            }
            if ($status > 2) {
                yield "$name: tidy ended with exit status $status";
            }
        }
    }

    /** Elements and attributes that no template writes. */
    public function foreign(): iterable
    {
        $elements = array_flip(explode(' ', 'HTML HEAD META TITLE LINK BODY A HEADER NAV MAIN FOOTER SECTION DIV ARTICLE H1 H2 H3 P PRE CODE B I SPAN UL OL LI DL DT DD DETAILS SUMMARY TABLE THEAD TBODY TR TH TD'));
        $attributes = array_flip(explode(' ', 'lang charset name content rel href class id style scope open aria-label aria-labelledby aria-current aria-hidden data-kib data-count'));
        foreach ($this->pages as $name => $page) {
            foreach ($page->querySelectorAll('*') as $element) {
                if (!isset($elements[$element->tagName])) {
                    yield "$name: element $element->tagName";
                }
                foreach ($element->attributes as $attribute) {
                    if (!isset($attributes[$attribute->name])) {
                        yield "$name: attribute $attribute->name of $element->tagName";
                    }
                }
            }
        }
    }

    /** Links that lead nowhere, or out of the web. */
    public function brokenLinks(): iterable
    {
        foreach ($this->pages as $name => $page) {
            foreach ($page->querySelectorAll('[href]') as $link) {
                $href = $link->getAttribute('href');
                if (preg_match('~^(?:https?://|mailto:[^@]+@[^@]+$)~', $href)) {
                    continue;
                }
                [$file, $fragment] = array_map(rawurldecode(...), explode('#', $href) + [1 => '']);
                $file = $file === '' ? $name : (dirname($name) === '.' ? $file : dirname($name) . "/$file");
                $file = preg_replace('~^[a-z]+/\.\./~', '', $file);
                if (!is_file("$this->folder/$file")) {
                    yield "$name: no file for $href";
                } elseif ($fragment !== '' && !$this->pages[$file]->getElementById($fragment)) {
                    yield "$name: nothing is called $fragment in $file";
                }
            }
        }
    }

    /** @return array<string, list<Dom\Element>> the entries of the packages, by the title of their page */
    public function entries(): array
    {
        $entries = [];
        foreach ($this->pages as $name => $page) {
            foreach ($page->querySelectorAll('article') as $entry) {
                $entries[$page->querySelector('h1')->textContent][] = $entry;
            }
        }
        return $entries;
    }
}

/** The section that a package is shown in. */
function section(array $package): string
{
    return $package['Section'] ?? 'unsorted';
}

/** The room that a package takes: a removed one takes none. */
function kib(array $package): int
{
    return str_ends_with($package['Status'] ?? '', ' config-files') ? 0 : (int) ($package['Installed-Size'] ?? 0);
}

/** The entries as the database has them: name, size and description of each, by sections. */
function expected_entries(array $packages): array
{
    $entries = [];
    foreach ($packages as $package) {
        $description = preg_replace('/^[ \t]+\.$/m', '', $package['Description'] ?? '');
        $entries[section($package)][] = [$package['Package'], kib($package), words($description)];
    }
    return sorted($entries);
}

function shown_entries(Site $site): array
{
    $entries = [];
    foreach ($site->entries() as $section => $articles) {
        foreach ($articles as $article) {
            $description = '';
            foreach ($article->querySelectorAll(':scope > .summary, details > p, details > pre') as $part) {
                $description .= $part->textContent . "\n";
            }
            $entries[$section][] = [$article->querySelector('h3 a')->textContent, (int) $article->getAttribute('data-kib'), words($description)];
        }
    }
    return sorted($entries);
}

function sorted(array $lists): array
{
    ksort($lists);
    foreach ($lists as $key => $list) {
        sort($list);
        $lists[$key] = $list;
    }
    return $lists;
}

/** What each package needs, as a text such as "a ≥ 1 or b, c". */
function expected_needs(array $packages): array
{
    $needs = [];
    foreach ($packages as $package) {
        $text = preg_replace(['/:[a-z0-9]+/', '/\s*\|\s*/', '/\(\s*(\S+?)\s+(\S+?)\s*\)/'], ['', ' or ', '$1 $2'], $package['Depends'] ?? '');
        $text = strtr($text, ['>=' => '≥', '<=' => '≤', '>>' => '>', '<<' => '<']);
        $needs[$package['Package']][] = implode(', ', array_filter(array_map(words(...), explode(',', $text))));
    }
    return sorted($needs);
}

function shown_needs(Site $site): array
{
    $needs = [];
    foreach (array_merge(...array_values($site->entries())) as $article) {
        $texts = [];
        foreach ($article->querySelectorAll('.facts > dt') as $term) {
            if ($term->textContent === 'Needs') {
                foreach ($term->nextElementSibling->querySelectorAll('li') as $group) {
                    $texts[] = words($group->textContent);
                }
            }
        }
        $needs[$article->querySelector('h3 a')->textContent][] = implode(', ', $texts);
    }
    return sorted($needs);
}

/** The counts and sizes of the sections, in the order of the index. */
function expected_index(array $packages): array
{
    $rows = [];
    foreach ($packages as $package) {
        $name = section($package);
        $rows[$name] ??= [$name, 0, 0];
        $rows[$name][1]++;
        $rows[$name][2] += kib($package);
    }
    uksort($rows, strcasecmp(...));
    return array_values($rows);
}

function shown_index(Site $site): array
{
    $rows = [];
    foreach ($site->pages['index.html']->querySelectorAll('tbody tr') as $row) {
        $cells = [...$row->querySelectorAll('td')];
        if ($cells[1]->textContent !== $row->getAttribute('data-count')) {
            $rows[] = 'a row that shows another number than it holds';
        }
        $rows[] = [$row->querySelector('th')->textContent, (int) $cells[1]->textContent, (int) $row->getAttribute('data-kib')];
    }
    return $rows;
}

/** The packages that each maintainer's mail lists. */
function expected_mails(array $packages): array
{
    $mails = [];
    foreach ($packages as $package) {
        if (isset($package['Maintainer'])) {
            $mails[$package['Maintainer']][] = $package['Package'];
        }
    }
    return sorted(array_values(sorted($mails)));
}

function shown_mails(Site $site): array
{
    $mails = [];
    foreach ($site->mails as $mail) {
        preg_match_all('/^\d+\. (\S+) /m', $mail, $names);
        $mails[] = $names[1];
    }
    return sorted($mails);
}

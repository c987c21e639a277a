<?php
declare(strict_types=1);

/*
 * A site read back, beside the database that it was made of. The database is read here by other means than the demo's,
 * so that a page is compared with the database and not with the demo's idea of it.
 */

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
        foreach (glob("$folder/{,sections/}*.html", GLOB_BRACE) as $file) {
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
            $tidy = ['tidy', '-errors', '-quiet', '-utf8', '--drop-empty-elements', 'no', $file];
            [$status, , $complaints] = run($tidy);
            foreach (preg_split('/\n/', $complaints, -1, PREG_SPLIT_NO_EMPTY) as $complaint) {
                if (!str_contains($complaint, 'attribute "aria-current"')) {   // too new for tidy
                    yield "$name: $complaint";
                }
            }
            if ($status > 2) {
                yield "$name: tidy ended with exit status $status";
            }
        }
    }

    /** What the demo should say in the end and did not. */
    public function missingFrom(string $output): iterable
    {
        $pages = number_format(count($this->pages));
        $mails = number_format(count($this->mails));
        $texts = glob("$this->folder/{,sections/,mails/}*.{html,txt}", GLOB_BRACE);
        $bytes = number_format(array_sum(array_map(filesize(...), $texts)));
        foreach (["$pages pages, ", "$mails mails, ", "$bytes bytes ", 'ms in ', "$this->folder/index.html"] as $part) {
            if (!preg_match('~(?<![\d,])' . preg_quote($part, '~') . '~', $output)) {
                yield "nothing like \"$part\" in: $output";
            }
        }
    }

    /** Elements and attributes that no template writes. */
    public function foreign(): iterable
    {
        $elements = 'HTML HEAD META TITLE LINK BODY A HEADER NAV MAIN FOOTER SECTION DIV ARTICLE H1 H2 H3 P PRE CODE B I '
            . 'SPAN UL OL LI DL DT DD DETAILS SUMMARY TABLE THEAD TBODY TR TH TD';
        $attributes = 'lang charset name content rel href class id style scope open data-kib data-count '
            . 'aria-label aria-labelledby aria-current aria-hidden';
        [$elements, $attributes] = [explode(' ', $elements), explode(' ', $attributes)];
        foreach ($this->pages as $name => $page) {
            foreach ($page->querySelectorAll('*') as $element) {
                if (!in_array($element->tagName, $elements, true)) {
                    yield "$name: element $element->tagName";
                }
                foreach ($element->attributes as $attribute) {
                    if (!in_array($attribute->name, $attributes, true)) {
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
            foreach ($article->querySelectorAll('.summary, details > p, details > pre') as $part) {
                $description .= $part->textContent . "\n";
            }
            $name = $article->querySelector('h3 a')->textContent;
            $entries[$section][] = [$name, (int) $article->getAttribute('data-kib'), words($description)];
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
        $text = preg_replace('/:[a-z][a-z0-9]*(?=[\s,|]|$)/', '', $package['Depends'] ?? '');
        $text = preg_replace(['/\s*\|\s*/', '/\(\s*(\S+?)\s+(\S+?)\s*\)/'], [' or ', '$1 $2'], $text);
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
        $name = $row->querySelector('th')->textContent;
        $rows[] = [$name, (int) $cells[1]->textContent, (int) $row->getAttribute('data-kib')];
    }
    return $rows;
}

/** The "To" line of each mail and the packages that it lists, by what a maintainer is called in the database. */
function expected_mails(array $packages): array
{
    $mails = [];
    foreach ($packages as $package) {
        if (isset($package['Maintainer'])) {
            $maintainer = words($package['Maintainer']);
            $mails[to_line($maintainer)][$maintainer][] = $package['Package'];
        }
    }
    return sorted(array_map(fn($lists) => array_values(sorted($lists)), $mails));
}

/** "Ada" <ada@example.org>, or what stands for it when there is no mail address. */
function to_line(string $maintainer): string
{
    [$name, $address] = preg_match('/^(.*?) ?<([^<>]*)>$/', $maintainer, $part) ? [trim($part[1], '"'), $part[2]] : [$maintainer, ''];
    if (!str_contains($address, '@')) {
        return 'undisclosed-recipients:;';
    }
    return ($name === '' ? '' : '"' . preg_replace('/["\'\\\\]/', '\\\\$0', $name) . '" ') . "<$address>";
}

function shown_mails(Site $site): array
{
    $mails = [];
    foreach ($site->mails as $mail) {
        preg_match('/^To: (.*)$/m', $mail, $to);
        preg_match_all('/^\d+\. (\S+) /m', $mail, $names);
        $mails[$to[1]][] = $names[1];
    }
    return sorted(array_map(sorted(...), $mails));
}

/** The sizes in the rankings: the ten largest of all packages, and the five largest and smallest of a large section. */
function expected_rankings(array $packages): array
{
    $sizes = ['Installed packages' => []];
    foreach ($packages as $package) {
        if (isset($package['Installed-Size'])) {
            $sizes['Installed packages'][] = $sizes[section($package)][] = kib($package);
        }
    }
    foreach ($sizes as $name => $list) {
        sort($list);
        $length = $name === 'Installed packages' ? 10 : 5;
        $rankings[$name] = ['Largest' => array_reverse(array_slice($list, -$length))];
        if ($length === 5) {
            $rankings[$name] = count($list) < 10 ? [] : $rankings[$name] + ['Smallest' => array_slice($list, 0, 5)];
        }
    }
    ksort($rankings);
    return $rankings;
}

function shown_rankings(Site $site): array
{
    foreach ($site->pages as $file => $page) {
        if ($file === 'maintainers.html') {
            continue;
        }
        $rankings[$page->querySelector('h1')->textContent] = [];
        foreach ($page->querySelectorAll('section:has(.ranking)') as $list) {
            $title = strtok($list->querySelector('h2')->textContent, ' ');
            foreach ($title === 'Busiest' ? [] : $list->querySelectorAll('a') as $link) {
                [$target, $id] = explode('#', $link->getAttribute('href'));
                $entry = $site->pages[$target === '' ? $file : $target]->getElementById(rawurldecode($id));
                $rankings[$page->querySelector('h1')->textContent][$title][] = (int) $entry->getAttribute('data-kib');
            }
        }
    }
    ksort($rankings);
    return $rankings;
}

<?php
declare(strict_types=1);

/*
 * The data of every page: one function for each template, which returns just what that template shows.
 *
 * Numbers are formatted here and written by the templates as they are. Everything that comes from the database is
 * text that anybody may have written, and the templates escape it.
 */

/** Section pages with no more packages than this have every entry unfolded, and need no letters to jump to. */
const FEW_PACKAGES = 12;

/** How many packages a list of the largest or the smallest shows. */
const RANKING_LENGTH = 5;

/** For index.html.tpl. */
function index_page(array $catalogue): array
{
    $champions = $catalogue['maintainers'];
    usort($champions, fn($a, $b) => $b['count'] <=> $a['count']);
    return [
        'root' => '',
        'page' => 'index',
        'how' => 'index',
        'title' => 'Installed packages',
        'total' => total($catalogue['packages']) + [
            'sections' => number(count($catalogue['sections'])),
            'maintainers' => number(count($catalogue['maintainers'])),
        ],
        'sections' => section_rows($catalogue['sections']),
        'largest' => largest($catalogue['packages'], 2 * RANKING_LENGTH),
        'champions' => maintainer_rows(array_slice($champions, 0, 2 * RANKING_LENGTH)),
    ];
}

/** For section.html.tpl: the page of the section at this place of the catalogue. */
function section_page(array $catalogue, int $place): array
{
    $sections = $catalogue['sections'];
    $section = $sections[$place];
    $most = max(array_column($section['packages'], 'kib'));
    $letters = [];
    foreach ($section['packages'] as $package) {
        $letters[first_letters($package['name'])][] = $package + ['bar' => percent($package['kib'], $most)];
    }
    $page = [
        'root' => '../',
        'page' => 'section',
        'how' => 'section',
        'title' => $section['name'],
        'total' => total($section['packages']) + [
            'share' => share($section['kib'], array_sum(array_column($sections, 'kib'))),
        ],
        'few' => $section['count'] <= FEW_PACKAGES,
        'letters' => $letters,
    ];
    if (isset(SECTION_TITLES[$section['name']])) {
        $page['about'] = SECTION_TITLES[$section['name']];
    }
    if ($section['count'] >= 2 * RANKING_LENGTH) {   // fewer, and both lists would name the same packages
        $page['largest'] = largest($section['packages'], RANKING_LENGTH);
        $page['smallest'] = smallest($section['packages'], RANKING_LENGTH);
    }
    foreach (['previous' => $place - 1, 'next' => $place + 1] as $name => $neighbour) {
        if (isset($sections[$neighbour])) {
            $page[$name] = ['name' => $sections[$neighbour]['name'], 'file' => $sections[$neighbour]['file']];
        }
    }
    return $page;
}

/** For maintainers.html.tpl. */
function maintainers_page(array $catalogue): array
{
    return [
        'root' => '',
        'page' => 'maintainers',
        'how' => 'maintainers',
        'title' => 'Maintainers',
        'total' => ['maintainers' => number(count($catalogue['maintainers']))],
        'maintainers' => maintainer_rows($catalogue['maintainers']),
    ];
}

/** For the mail to the maintainer at this place of the catalogue. */
function maintainer_mail(array $catalogue, int $place): array
{
    $maintainer = $catalogue['maintainers'][$place];
    $sections = [];
    foreach (make_groups($maintainer['packages'], 'section', 'page') as $group) {
        $numbers = range(1, $group['count']);
        $sections[] = ['name' => $group['name'], 'packages' => array_combine($numbers, $group['packages'])];
    }
    return [
        'to' => $maintainer['packages'][0]['person'],
        'date' => date(DATE_RFC2822),
        'count' => $maintainer['count'],
        'sections' => $sections,
    ] + ($maintainer['kib'] > 0 ? ['size' => size_text($maintainer['kib'])] : []);
}

/** The sum of some packages. */
function total(array $packages): array
{
    $kib = array_sum(array_column($packages, 'kib'));
    return ['packages' => number(count($packages)), 'size' => size_text($kib)];
}

/** The rows of a table of sections. */
function section_rows(array $sections): array
{
    $most = max([0, ...array_column($sections, 'kib')]);
    $rows = [];
    foreach ($sections as $section) {
        $rows[] = [
            'name' => $section['name'],
            'file' => $section['file'],
            'count' => $section['count'],
            'kib' => $section['kib'],
            'size' => size_text($section['kib']),
            'bar' => percent($section['kib'], $most),
        ] + (isset(SECTION_TITLES[$section['name']]) ? ['about' => SECTION_TITLES[$section['name']]] : []);
    }
    return $rows;
}

/** The rows of a table of maintainers. */
function maintainer_rows(array $maintainers): array
{
    $most = max([0, ...array_column($maintainers, 'count')]);
    $rows = [];
    foreach ($maintainers as $maintainer) {
        $rows[] = $maintainer['packages'][0]['person'] + [
            'file' => $maintainer['file'],
            'count' => $maintainer['count'],
            'size' => size_text($maintainer['kib']),
            'bar' => percent($maintainer['count'], $most),
        ];
    }
    return $rows;
}

/** The largest packages, the largest of all at the end: a template shows them in reverse. */
function largest(array $packages, int $length): array
{
    return ranked(array_slice(by_size($packages), -$length));
}

/** The smallest packages, the smallest of all first. */
function smallest(array $packages, int $length): array
{
    return ranked(array_slice(by_size($packages), 0, $length));
}

function by_size(array $packages): array
{
    $packages = array_filter($packages, fn($package) => isset($package['size']));
    usort($packages, fn($a, $b) => $a['kib'] <=> $b['kib']);
    return $packages;
}

function ranked(array $packages): array
{
    $most = max([0, ...array_column($packages, 'kib')]);
    return array_map(fn($package) => $package + ['bar' => percent($package['kib'], $most)], $packages);
}

/** The letters under which a name is sorted: the first one, or for a library the first after "lib" as well. */
function first_letters(string $name): string
{
    return preg_match('/^lib./u', $name, $part) || preg_match('/^./u', $name, $part) ? $part[0] : '?';
}

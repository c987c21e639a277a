<?php
declare(strict_types=1);

/*
 * From the fields of the database to packages that a template can show, sorted into sections and maintainers.
 *
 * A template asks whether a value is there and whether it is true, and compares it with a text; it counts nothing and
 * formats nothing. So everything that takes thinking happens before: a package holds what its entry shows, under the
 * names that the template uses. A value that does not exist is left out rather than set to an empty text: that is
 * what lets a template fall back to a default.
 */

/** The fields that name other packages, and what a page calls them, in the order in which it lists them. */
const RELATIONS = [
    'pre-depends' => 'Needs first',
    'depends' => 'Needs',
    'recommends' => 'Recommends',
    'suggests' => 'Suggests',
    'enhances' => 'Enhances',
    'provides' => 'Provides',
    'breaks' => 'Breaks',
    'conflicts' => 'Conflicts with',
    'replaces' => 'Replaces',
];

/** Those of them without which a package does not work. */
const NEEDS = ['Needs first', 'Needs'];

/**
 * @param iterable<array<string, string>> $database what read_packages() yields
 * @return array{packages: list<array>, sections: list<array>, maintainers: list<array>} packages, by name; groups of
 *         them, by name, each as make_groups() describes it
 */
function build_catalogue(iterable $database): array
{
    $packages = [];
    foreach ($database as $fields) {
        $packages[] = make_package($fields);
    }
    usort($packages, fn($a, $b) => [$a['name'], $a['architecture'] ?? ''] <=> [$b['name'], $b['architecture'] ?? '']);
    $packages = link_packages(name_files($packages));

    return [
        'packages' => $packages,
        'sections' => make_groups($packages, 'section', 'page'),
        'maintainers' => make_groups($packages, 'maintainer', 'mail'),
    ];
}

/** One package, from its fields. */
function make_package(array $fields): array
{
    [$summary, $description] = parse_description($fields['description'] ?? '');
    $state = explode(' ', $fields['status'] ?? 'install ok installed');   // what is wanted, a flag, what is
    $package = [
        'name' => $fields['package'],
        'section' => ($fields['section'] ?? '') ?: 'unsorted',
        'summary' => $summary,
        'description' => $description,
        'state' => end($state),
        'essential' => ($fields['essential'] ?? '') === 'yes',
        'kib' => 0,
        'relations' => [],
    ];
    foreach (['version', 'architecture', 'priority', 'maintainer'] as $name) {
        if (($fields[$name] ?? '') !== '') {
            $package[$name] = preg_replace('/\s+/', ' ', $fields[$name]);
        }
    }
    if (isset($fields['source'])) {
        $package['source'] = strtok($fields['source'], ' ');   // a version may follow in parentheses
    }
    if (preg_match('~^https?://[\w.:-]+(?:[/?#][\w!#$%&\'()*+,./:;=?@\~-]*)?$~', $fields['homepage'] ?? '')) {
        $package['homepage'] = $fields['homepage'];   // escaping alone would let a "javascript:" link pass
    }
    // What was removed and only left its configuration behind still has a size in the database, but takes no room.
    if (isset($fields['installed-size']) && !in_array($package['state'], ['config-files', 'not-installed'], true)) {
        $package['kib'] = (int) $fields['installed-size'];
        $package['size'] = size_text($package['kib']);
    }
    if (isset($package['maintainer'])) {
        $package['person'] = parse_person($package['maintainer']);
        if (isset($package['person']['address'])) {
            [$package['person']['mailbox'], $package['person']['host']] = explode('@', $package['person']['address']);
        }
    }
    foreach (RELATIONS as $field => $label) {
        if (isset($fields[$field])) {
            $package['relations'][$label] = parse_relations($fields[$field]);
        }
    }
    return $package;
}

/**
 * Says where a package appears: "page" and "mail" are the files of its section and its maintainer, "id" is the name of
 * its entry on the page, which is its own name, or name:architecture where that is there twice.
 */
function name_files(array $packages): array
{
    $pages = file_names(array_column($packages, 'section'));
    $mails = file_names(array_column($packages, 'maintainer'));
    $listed = array_count_values(array_column($packages, 'name'));
    foreach ($packages as $i => $package) {
        $packages[$i]['page'] = $pages[$package['section']] . '.html';
        if (isset($package['maintainer'])) {
            $packages[$i]['mail'] = $mails[$package['maintainer']] . '.txt';
        }
        $packages[$i]['id'] = $package['name'];
        if ($listed[$package['name']] > 1) {
            $packages[$i]['id'] .= ':' . ($package['architecture'] ?? 'unknown');
        }
    }
    return $packages;
}

/**
 * Makes a file name of every name: harmless in any file system, and different for different names.
 *
 * @param list<string> $names may hold a name several times
 * @return array<string, string> file names, without an extension, by the names
 */
function file_names(array $names): array
{
    $names = array_map(strval(...), array_keys(array_flip($names)));
    sort($names, SORT_STRING);
    $files = [];
    $taken = [];
    foreach ($names as $name) {
        // A person goes by the address, which is shorter than the name and in plain letters.
        $base = preg_match('/<([^<>]+)>$/', $name, $part) ? $part[1] : $name;
        $base = trim(preg_replace('/[^a-z0-9@_+-]+/', '.', strtolower($base)), '.');
        $base = $base === '' ? 'unnamed' : substr($base, 0, 100);
        $file = $base;
        for ($n = 2; isset($taken[$file]); $n++) {
            $file = "$base.$n";
        }
        $taken[$file] = true;
        $files[$name] = $file;
    }
    return $files;
}

/**
 * Links the packages that others name: an alternative gets the "entry" that it leads to, if it is there, and a package
 * the number of those that need it, if there are any.
 */
function link_packages(array $packages): array
{
    $places = [];
    foreach ($packages as $place => $package) {
        $places[$package['name']] ??= $place;
        $places[$package['id']] = $place;
    }
    $neededBy = [];
    foreach ($packages as $place => $package) {
        $needed = [];
        foreach (alternatives($package) as [$label, $group, $number, $alternative]) {
            $name = $alternative['name'];
            $other = $places["$name:" . ($package['architecture'] ?? '')] ?? $places[$name] ?? null;
            if ($other !== null) {
                $packages[$place]['relations'][$label][$group][$number]['entry'] =
                    ['page' => $packages[$other]['page'], 'id' => $packages[$other]['id']];
                if (in_array($label, NEEDS, true)) {
                    $needed[$other] = true;   // once, however often it is named
                }
            }
        }
        foreach (array_keys($needed) as $other) {
            $neededBy[$other] = ($neededBy[$other] ?? 0) + 1;
        }
    }
    foreach ($neededBy as $place => $count) {
        $packages[$place]['neededBy'] = $count;
    }
    return $packages;
}

/** All alternatives that a package names, each with the three keys that lead to it. */
function alternatives(array $package): iterable
{
    foreach ($package['relations'] as $label => $groups) {
        foreach ($groups as $group => $alternatives) {
            foreach ($alternatives as $number => $alternative) {
                yield [$label, $group, $number, $alternative];
            }
        }
    }
}

/**
 * Sorts packages into groups: those that have the same file.
 *
 * @param string $name the field that names the group
 * @param string $file the field that holds its file; a package without it is in no group
 * @return list<array{name: string, file: string, count: int, kib: int, packages: list<array>}> by name
 */
function make_groups(array $packages, string $name, string $file): array
{
    $groups = [];
    foreach ($packages as $package) {
        $key = $package[$file] ?? null;
        if ($key !== null) {
            $groups[$key] ??= ['name' => $package[$name], 'file' => $key, 'count' => 0, 'kib' => 0, 'packages' => []];
            $groups[$key]['count']++;
            $groups[$key]['kib'] += $package['kib'];
            $groups[$key]['packages'][] = $package;
        }
    }
    usort($groups, fn($a, $b) => strcasecmp($a['name'], $b['name']) ?: strcmp($a['name'], $b['name']));
    return $groups;
}

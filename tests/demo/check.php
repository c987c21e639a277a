<?php
declare(strict_types=1);

require __DIR__ . '/../lib/harness.php';
require __DIR__ . '/site.php';

$scratch = sys_get_temp_dir() . '/demo-' . getmypid();
register_shutdown_function(remove_tree(...), $scratch);
mkdir($scratch);

function php(string ...$arguments): array
{
    return [getenv('PHP'), '-n', '-d', 'memory_limit=1G', '-d', 'extension=' . getenv('TEMPLATE_SO'), ...$arguments];
}

function render(string $database, string $folder): array
{
    return run(php('examples/packages/site.php', $database, $folder));
}

foreach (['examples/README.md', 'README.md'] as $readme) {
    $isQuoted = fn (string $file) => str_contains(file_get_contents($readme), "\n" . file_get_contents("examples/first/$file") . '```');
    check("$readme quotes the first template", differences([], array_filter(['menu.html.tpl', 'menu.php', 'menu.html'], fn ($file) => !$isQuoted($file))));
}

// The machine's own packages; in a system without any, those of the private system that we run in. A copy, since a
// package manager may be at work.
$real = '/var/lib/dpkg/status';
copy(is_file($real) && filesize($real) > 0 ? $real : getenv('DPKG_ADMINDIR') . '/status', "$scratch/status");
$book = fn (string $path) => run([...php(), '-d', 'display_errors=stderr', 'examples/books/index.php', $path]);
check('the bookshop has a list, a page and a mail', differences(
    [[0, true, ''], [0, true, ''], [0, true, '']],
    array_map(fn (array $asked) => [($seen = $book($asked[0]))[0], str_contains($seen[1], $asked[1]), $seen[2]], [
        ['/', "<li><a href=\"/book/middlemarch\">Middlemarch &amp; more</a>, out of print</li>"],
        ['/book/emma', "<p>by Jane Austen</p>\n<p>Filed under novel, matchmaking.</p>\n<p>8.50 – <a href=\"/order/emma\">"],
        ['/order/beowulf', "thank you for ordering \"Beowulf\".\nIt costs 12.00, and leaves us tomorrow.\n\n-- \n"],
    ])
));

// With a section that is large enough to have rankings.
$sized = array_map(fn (int $number) => "\nPackage: sized-$number\nSection: sized\nInstalled-Size: " . $number ** 3 . "\n", range(1, 12));
file_put_contents("$scratch/hostile", file_get_contents('tests/demo/hostile.status') . implode($sized));

foreach (['the machine' => "$scratch/status", 'a hostile database' => "$scratch/hostile"] as $name => $database) {
    $seen = render($database, "$scratch/$name");
    $site = new Site("$scratch/$name");
    preg_match_all('/^Package: *(.*)$/m', file_get_contents($database), $packages);
    sort($packages[1]);
    check("$name: renders without a complaint", differences([0, 0], [$seen[0], preg_match('/warning|notice|deprecated|error/i', $seen[1] . $seen[2])]));
    check("$name: every page is valid HTML", $site->invalid());
    check("$name: holds no markup but that of the templates", $site->foreign());
    check("$name: every link leads somewhere", $site->brokenLinks());
    check("$name: every package has an entry", differences($packages[1], $site->packages()));
}

// After a change of the templates: UPDATE=1 ./dev test demo, and read the difference.
if (getenv('UPDATE')) {
    file_put_contents('tests/demo/hostile.txt', $site->text());
}
check('what can be read on the pages and in the mails is what was recorded',
    differences(file('tests/demo/hostile.txt'), preg_split('/(?<=\n)(?=.)/s', $site->text())));

// Once more into the same folder, with other packages: what is not the demo's own stays as it is.
$folder = "$scratch/a hostile database";
file_put_contents("$folder/sections/mine.txt", 'mine');
unlink("$folder/index.html");
symlink("$scratch/status", "$folder/index.html");
file_put_contents("$folder/.files", "../status\nmails/../../status\n", FILE_APPEND);
$before = md5_file("$scratch/status");
file_put_contents("$scratch/small", "Package: alone\nSection: tools\nStatus: install ok installed\n");
check('replaces its own files, and leaves all others', differences(
    [0, ['.files', 'how', 'index.html', 'maintainers.html', 'sections', 'style.css'], ['mine.txt', 'tools.html'], false, $before],
    [render("$scratch/small", $folder)[0], names_in($folder), names_in("$folder/sections"), is_link("$folder/index.html"), md5_file("$scratch/status")]
));
mkdir("$scratch/strange");
file_put_contents("$scratch/strange/thesis.txt", 'mine');
foreach ([["$scratch/small", "$scratch/strange", 'holds other files'], ["$scratch/missing", "$scratch/new", 'cannot be read'],
    ['/dev/null', "$scratch/new", 'lists no packages'], ["$scratch/small", "$scratch/small/new", 'cannot be made']] as [$database, $folder, $reason]) {
    [$status, $output, $complaint] = render($database, $folder);
    check("gives up with one sentence: $reason", differences([1, '', 1], [$status, $output, preg_match("/^site\.php: [^\n]*$reason/m", $complaint)]));
}

echo "\n$passed passed, $failed failed\n";
exit($failed ? 1 : 0);

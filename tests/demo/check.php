<?php
declare(strict_types=1);

require __DIR__ . '/../harness.php';
require __DIR__ . '/site.php';

$scratch = sys_get_temp_dir() . '/demo-' . getmypid();
register_shutdown_function(remove_tree(...), $scratch);

// The machine's own packages; in a system without any, those of the private system that we run in.
$real = '/var/lib/dpkg/status';
if (!is_file($real) || filesize($real) === 0) {
    $real = getenv('DPKG_ADMINDIR') . '/status';
}
// A copy, since a package manager may be at work.
mkdir($scratch);
copy($real, "$scratch/status");
copy("$scratch/status", "$scratch/status.before");

echo "-- the first template\n";

foreach (array_filter(['examples/README.md', 'README.md'], is_file(...)) as $readme) {
    $text = file_get_contents($readme);
    check("$readme quotes it", (function () use ($text) {
        foreach (['menu.html.tpl', 'menu.php', 'menu.html'] as $file) {
            if (!str_contains($text, "\n" . file_get_contents("examples/first/$file") . '```')) {
                yield "not as it is: $file";
            }
        }
    })());
}
check('its output is the one that is shown', differences(
    [0, file_get_contents('examples/first/menu.html'), ''],
    run(php('examples/first/menu.php'))
));

// With a section that is large enough to have rankings.
$sized = array_map(fn (int $number) => "\nPackage: sized-$number\nSection: sized\nInstalled-Size: " . $number ** 3 . "\n", range(1, 12));
file_put_contents("$scratch/hostile", file_get_contents('tests/demo/hostile.status') . implode($sized));

foreach (['the machine' => "$scratch/status", 'a hostile database' => "$scratch/hostile"] as $name => $database) {
    $folder = "$scratch/$name";
    [$status, $output, $complaints] = render($database, $folder);
    $site = new Site($folder);
    preg_match_all('/^Package: *(.*)$/m', file_get_contents($database), $packages);
    sort($packages[1]);
    printf("-- %s: %d packages on %d pages\n", $name, count($packages[1]), count($site->pages));

    preg_match('/^.*(?:warning|notice|deprecated|error).*$/mi', "$output$complaints", $complaint);
    check('renders without a complaint', differences([0, []], [$status, $complaint]));
    if ($status !== 0) {
        continue;   // there is nothing to look at
    }
    check('says what it made', $site->missingFrom($output));
    check('every page is valid HTML', $site->invalid());
    check('holds no markup but that of the templates', $site->foreign());
    check('every link leads somewhere', $site->brokenLinks());
    check('every package has an entry', differences($packages[1], $site->packages()));
}

// After a change of the templates: UPDATE=1 ./dev test demo, and read the difference.
if (getenv('UPDATE')) {
    file_put_contents('tests/demo/hostile.txt', $site->text());
}
check('what can be read on the pages and in the mails is what was recorded',
    differences(file('tests/demo/hostile.txt'), preg_split('/(?<=\n)(?=.)/s', $site->text())));

echo "-- running it again\n";

$folder = "$scratch/again";
render('tests/demo/hostile.status', $folder);
file_put_contents("$folder/sections/mine.txt", 'mine');
symlink("$scratch/status", "$folder/linked");
unlink("$folder/index.html");
symlink("$scratch/status", "$folder/index.html");
file_put_contents("$scratch/small", "Package: alone\nSection: tools\nStatus: install ok installed\n");
[$status] = render("$scratch/small", $folder);
check('replaces its own files, and leaves all others', differences(
    [0, ['.files', 'index.html', 'linked', 'maintainers.html', 'sections', 'style.css'], ['mine.txt', 'tools.html']],
    [$status, names_in($folder), names_in("$folder/sections")]
));
check('does not write through a link', differences(
    [false, file_get_contents("$scratch/status")],
    [is_link("$folder/index.html"), file_get_contents("$scratch/status.before")]
));

file_put_contents("$folder/.files", "../status\n/etc/hostname\nmails/../../status\n", FILE_APPEND);
render("$scratch/small", $folder);
check('does not remove what a list of files names outside of the folder', differences(true, is_file("$scratch/status")));

mkdir("$scratch/strange");
file_put_contents("$scratch/strange/thesis.txt", 'mine');
foreach ([
    ["$scratch/small", "$scratch/strange", 'holds other files'],
    ["$scratch/missing", "$scratch/new", 'cannot be read'],
    ['/dev/null', "$scratch/new", 'lists no packages'],
    ["$scratch/small", "$scratch/small/new", 'cannot be made'],
] as [$database, $folder, $reason]) {
    [$status, $output, $complaints] = render($database, $folder);
    $complaint = explode("\n", preg_replace('/^Reading.*\n/', '', $complaints));
    $sentence = str_starts_with($complaint[0], 'site.php: ') && str_contains($complaint[0], $reason);
    check("gives up with one sentence: $reason",
        differences([1, '', true, 2], [$status, $output, $sentence, count($complaint)]));
}

echo "-- progress\n";

[, , $plain] = render("$scratch/status", "$scratch/plain");
check('is a line for each task where no terminal is',
    differences([3, false], [substr_count($plain, "\n"), str_contains($plain, "\r")]));
$command = php('examples/packages/site.php', "$scratch/status", "$scratch/terminal");
$command = implode(' ', array_map(escapeshellarg(...), $command));
[, $terminal] = run(['script', '-qec', $command, '/dev/null']);
$progress = strstr($terminal, "\r\e[K       ", true);
check('is one line that is redrawn on a terminal', differences(
    [0, true],
    [substr_count($progress ?: "\n", "\n"), substr_count($progress ?: '', "\r\e[K") > 3]
));

echo "\n$passed passed, $failed failed\n";
exit($failed ? 1 : 0);

<?php
declare(strict_types=1);

/*
 * Renders a site of static pages, and a mail for every maintainer, from a database of Debian packages.
 *
 *     php site.php STATUS FOLDER
 *
 * STATUS is dpkg's database (/var/lib/dpkg/status), FOLDER is where the site goes.
 *
 * The way of the data: src/database.php reads fields, src/catalogue.php makes packages of them and sorts these,
 * src/pages.php makes the data of each page, template() makes the page, and src/output_folder.php writes it. src/how.php
 * makes the pages that show how.
 */

require __DIR__ . '/src/database.php';
require __DIR__ . '/src/catalogue.php';
require __DIR__ . '/src/sections.php';
require __DIR__ . '/src/numbers.php';
require __DIR__ . '/src/pages.php';
require __DIR__ . '/src/mail.php';
require __DIR__ . '/src/how.php';
require __DIR__ . '/src/renderer.php';
require __DIR__ . '/src/output_folder.php';
require __DIR__ . '/src/progress.php';

// A template's name is looked up like any file that PHP opens, and so are the names in include tags. With the folder
// of the templates as include path, they can be named without it, wherever the script is started.
set_include_path(__DIR__ . '/templates');

function render_site(array $catalogue, OutputFolder $folder, Renderer $renderer, Progress $progress): void
{
    $folder->write('style.css', file_get_contents(__DIR__ . '/templates/style.css'));
    $folder->write('index.html', $renderer->file('index.html.tpl', index_page($catalogue)));
    $folder->write('maintainers.html', $renderer->file('maintainers.html.tpl', maintainers_page($catalogue)));

    $progress->start('Rendering the pages of the sections', count($catalogue['sections']));
    foreach ($catalogue['sections'] as $place => $section) {
        $page = $renderer->file('section.html.tpl', section_page($catalogue, $place));
        $folder->write("sections/{$section['file']}", $page);
        $progress->step($section['name']);
    }

    $progress->start('Rendering the mails to the maintainers', count($catalogue['maintainers']));
    foreach ($catalogue['maintainers'] as $place => $maintainer) {
        $mail = $renderer->string(MAIL, maintainer_mail($catalogue, $place));
        $folder->write("mails/{$maintainer['file']}", $mail);
        $progress->step($maintainer['name']);
    }
    foreach (how_pages($catalogue) as $name => $page) {
        $folder->write("how/$name.html", $renderer->file('how.html.tpl', $page));
    }
    $folder->finish();
    $progress->finish();
}

function main(string $database, string $path): void
{
    $file = @fopen($database, 'rb');
    if (!$file) {
        throw new RuntimeException("the package database $database cannot be read");
    }
    $progress = new Progress();
    $progress->start('Reading the package database', 1);
    $catalogue = build_catalogue(read_packages($file));
    if (!$catalogue['packages']) {
        throw new RuntimeException("$database lists no packages: is it dpkg's status file?");
    }
    $renderer = new Renderer();
    render_site($catalogue, new OutputFolder($path), $renderer, $progress);

    [$packages, $sections, $mails] = array_map(count(...), array_values($catalogue));
    printf("%9s pages, with %s packages in %s sections\n", number($sections + 2 + count(how_pages($catalogue))), number($packages), number($sections));
    printf("%9s mails, one to each maintainer\n", number($mails));
    printf("%9s bytes of text\n", number($renderer->bytes));
    printf("%9s ms in %s calls of template()\n", number_format($renderer->seconds * 1000, 1), number($renderer->calls));
    printf("Open %s/index.html\n", realpath($path));
    printf("To see a change: edit %s/templates/index.html.tpl, run the same command again, reload the page.\n", __DIR__);
}

if ($argc !== 3) {
    fwrite(STDERR, "usage: php $argv[0] STATUS FOLDER\n");
    exit(2);
}
try {
    main($argv[1], $argv[2]);
} catch (RuntimeException $failure) {
    fwrite(STDERR, "site.php: {$failure->getMessage()}\n");
    exit(1);
}

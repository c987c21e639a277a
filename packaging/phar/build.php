<?php
/**
 * Makes the command line a single file, with all that it uses inside: the same folder and libraries give
 * the same bytes.
 *
 *     php -d phar.readonly=0 packaging/phar/build.php FOLDER TIME TARGET
 *
 * FOLDER holds bin/ and cli/ as a commit has them; TIME is what all files in it get, in seconds since 1970.
 * The libraries are taken from PHP's include path, where Debian's packages put them.
 */

declare(strict_types=1);

/** What the command line uses, each with an autoloader of its own that finds the others beside it. */
const LIBRARIES = [
    'Psr/Container', 'Symfony/Contracts/Deprecation', 'Symfony/Contracts/Service',
    'Symfony/Component/Console', 'Symfony/Component/Finder', 'Symfony/Component/String',
];

/** Whose they are, and on what terms. */
const COPYRIGHT = '/usr/share/doc/php-symfony-console/copyright';

const STUB = <<<'PHP'
    #!/usr/bin/env php
    <?php
    Phar::mapPhar('template.phar');
    require 'phar://template.phar/bin/template';
    __HALT_COMPILER();
    PHP;

const AUTOLOAD = <<<'PHP'
    <?php
    require_once __DIR__ . '/missing_functions.php';
    require_once __DIR__ . '/Symfony/Component/Console/autoload.php';
    require_once __DIR__ . '/Symfony/Component/Finder/autoload.php';
    PHP;

[, $folder, $time, $target] = $argv;

$files = [
    ...files_of($folder, ''),
    ...array_merge(...array_map(library(...), LIBRARIES)),
    'vendor/autoload.php' => AUTOLOAD,
    'vendor/copyright' => file_get_contents(COPYRIGHT),
    'vendor/missing_functions.php' => file_get_contents(__DIR__ . '/missing_functions.php'),
];
ksort($files);

@unlink($target);
$phar = new Phar($target, 0, 'template.phar');
$phar->startBuffering();
foreach ($files as $name => $text) {
    $phar->addFromString($name, $text);
    $phar[$name]->chmod(0644);
}
$phar->setStub(STUB . " ?>\r\n");
$phar->setSignatureAlgorithm(Phar::SHA256);
$phar->stopBuffering();
unset($phar);
file_put_contents($target, with_time(file_get_contents($target), (int) $time));
chmod($target, 0755);

/** @return array<string, string> texts by name in the archive */
function library(string $name): array
{
    $autoloader = stream_resolve_include_path("$name/autoload.php");
    if ($autoloader === false) {
        fwrite(STDERR, "There is no $name in PHP's include path.\n");
        exit(1);
    }
    return files_of(dirname($autoloader), "vendor/$name/");
}

/** @return array<string, string> */
function files_of(string $folder, string $prefix): array
{
    $files = [];
    foreach (new RecursiveIteratorIterator(new RecursiveDirectoryIterator($folder, FilesystemIterator::SKIP_DOTS)) as $path => $file) {
        $name = substr($path, strlen($folder) + 1);
        if ($file->isFile() && !preg_match('#(^|/)Tests?/#', $name)) {
            $files[$prefix . $name] = file_get_contents($path);
        }
    }
    return $files;
}

/**
 * A phar with another time for all files. They get the time of their making, and PHP has no way to say
 * otherwise: a time stands in the manifest, behind each name and size, and the signature is over all.
 */
function with_time(string $phar, int $time): string
{
    $start = strpos($phar, "__HALT_COMPILER(); ?>\r\n") + strlen("__HALT_COMPILER(); ?>\r\n");
    $number = fn (int $offset): int => unpack('V', $phar, $offset)[1];
    $count = $number($start + 4);
    // length, count, version (2 bytes), flags, alias, metadata
    $at = $start + 14;
    $at += 4 + $number($at);
    $at += 4 + $number($at);
    for ($i = 0; $i < $count; $i++) {
        $at += 4 + $number($at) + 4;
        $phar = substr_replace($phar, pack('V', $time), $at, 4);
        // time, size, checksum, flags, metadata
        $at += 16;
        $at += 4 + $number($at);
    }
    // behind the text a SHA-256, its kind and "GBMB"
    return substr($phar, 0, -40) . hash('sha256', substr($phar, 0, -40), true) . substr($phar, -8);
}

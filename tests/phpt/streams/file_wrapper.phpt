--TEST--
Plain names where the file system has not the only say in them; files are closed whatever happens
--FILE--
<?php
require __DIR__ . '/../helper.inc';

/** A file system of the program's own, which notes what is asked of it. */
class Files extends Source
{
    public static array $log = [];
    public function stream_open(string $path, string $mode = '', int $options = 0): bool
    {
        self::$log[] = basename($path) . ' ' . $options;
        return parent::stream_open($path);
    }
    public function url_stat(string $path): array|false
    {
        self::$log[] = 'stat ' . basename($path);
        return isset(self::$texts[basename($path)]) ? ['mode' => 0100444] : false;
    }
}

/** What comes of a file by each kind of name, at the top level and included. */
function show(string $what): void
{
    foreach (['page.tpl', './page.tpl', getcwd() . '/page.tpl'] as $name) {
        $seen[] = [template($name, ['v' => 'V']), template("{include name}", ['name' => $name, 'v' => 'V'], true)];
    }
    echo $what, ': ', json_encode([$seen, implode(', ', Files::$log)]), "\n";
    Files::$log = [];
}

in_folder_with(['page.tpl' => 'file {v}']);
set_include_path('.');
Files::$texts = ['page.tpl' => 'wrapper {v}'];
show('nothing registered');
stream_wrapper_register('other', Files::class);
show('a wrapper that is not asked');
set_include_path('other://folder');
show('a wrapper in the include path');
set_include_path('.');
stream_wrapper_unregister('file');
stream_wrapper_register('file', Files::class);
show('a wrapper for files');
stream_wrapper_restore('file');
show('the files again');

// Whatever ends the reading of a file, the file is closed.
function openFiles(): int
{
    return count(scandir('/proc/self/fd'));
}
file_put_contents('fault.tpl', '{include page.tpl}{optional v}');
file_put_contents('throws.tpl', str_repeat('text ', 5000) . '{v}' . str_repeat('text ', 5000));
$throws = new Doing(fn () => throw new LogicException('in the middle of a file'));
$before = openFiles();
for ($i = 0; $i < 5; $i++) {
    $ends = [outcome('fault.tpl', [], false), outcome('throws.tpl', ['v' => $throws], false)];
}
echo json_encode($ends), ' ', openFiles() - $before, " more files open\n";

// Under open_basedir files are still opened, along the include path as well.
ini_set('open_basedir', getcwd());
show('within open_basedir');
--EXPECT--
nothing registered: [[["file V","file V"],["file V","file V"],["file V","file V"]],""]
a wrapper that is not asked: [[["file V","file V"],["file V","file V"],["file V","file V"]],""]
a wrapper in the include path: [[["wrapper V","wrapper V"],["file V","file V"],["file V","file V"]],"stat page.tpl, page.tpl 16384, stat page.tpl, page.tpl 16384"]
a wrapper for files: [[["wrapper V","wrapper V"],["wrapper V","wrapper V"],["wrapper V","wrapper V"]],"page.tpl 16384, page.tpl 16384, page.tpl 16384, page.tpl 16384, page.tpl 16384, page.tpl 16384"]
the files again: [[["file V","file V"],["file V","file V"],["file V","file V"]],""]
[[null,"Missing closing tag in fault.tpl"],["LogicException: in the middle of a file"]] 0 more files open
within open_basedir: [[["file V","file V"],["file V","file V"],["file V","file V"]],""]

--TEST--
Templates out of archives and compressed files, whole, cut off and corrupt
--EXTENSIONS--
phar
zlib
--INI--
phar.readonly=0
--FILE--
<?php
require __DIR__ . '/../helper.inc';

in_folder_with([
    'page.tpl.gz' => gzencode('zipped {v}, {include part.tpl}'),
    'part.tpl' => 'plain part',
    'cut.gz' => substr(gzencode(str_repeat('text {v} ', 20000)), 0, 100),
]);
$archive = new Phar(getcwd() . '/site.phar');
$archive['page.tpl'] = 'packed {v}, {include part.tpl}, {include phar://site.phar/part.tpl}';
$archive['part.tpl'] = 'packed part';
$archive['folder/zipped.tpl'] = str_repeat('text {v} ', 2000);
$archive['folder/zipped.tpl']->compress(Phar::GZ);
// Code in an archive finds the files beside it, behind those of the include path, and from its own folder only.
$archive['code.php'] = '<?php return [template(__DIR__ . "/page.tpl", ["v" => "V"]), template("page.tpl", ["v" => "V"]),
    template("[{include folder/note.tpl}{include ./folder/note.tpl}]", [], true)];';
$archive['folder/note.tpl'] = 'a note';
$archive['folder/code.php'] = '<?php return [template("note.tpl", []), @template("page.tpl", [])];';
unset($archive);

foreach (['page.tpl', 'nosuch.tpl', 'folder', ''] as $name) {
    echo $name, ': ', json_encode([outcome("phar://site.phar/$name", ['v' => 'V'], false), outcome("[{include phar://site.phar/$name}]", ['v' => 'V'])]), "\n";
}
echo json_encode(outcome('phar://part.tpl/page.tpl', [], false)), "\n";
echo json_encode(outcome('phar://site.phar/folder/zipped.tpl', ['v' => 'V'], false) === [str_repeat('text V ', 2000)]), "\n";
echo json_encode([include 'phar://site.phar/code.php', include 'phar://site.phar/folder/code.php']), "\n";

foreach (['page.tpl.gz', 'part.tpl', 'nosuch.gz'] as $name) {
    echo $name, ': ', json_encode([outcome("compress.zlib://$name", ['v' => 'V'], false), outcome("[{include compress.zlib://$name}]", ['v' => 'V'])]), "\n";
}
$seen = outcome('compress.zlib://cut.gz', ['v' => 'V'], false);
echo json_encode(count($seen) === 1 && $seen[0] !== '' && str_starts_with(str_repeat('text V ', 20000), $seen[0])), "\n";
// PHP's stream of a corrupt file neither delivers nor ends: the time limit does.
[$output] = run_script('set_time_limit(1); file_put_contents(__FILE__ . ".gz", "\x1f\x8b\x08\0\0\0\0\0\0\3nothing that could be inflated");
    register_shutdown_function(unlink(...), __FILE__ . ".gz"); template("compress.zlib://" . __FILE__ . ".gz", []);');
echo preg_match('/Fatal error: (.*?) in /', $output, $error) ? $error[1] : $output, "\n";
--EXPECT--
page.tpl: [["packed V, plain part, packed part"],["[packed V, plain part, packed part]"]]
nosuch.tpl: [[null,"Could not open file phar:\/\/site.phar\/nosuch.tpl"],["[]"]]
folder: [[null,"Could not open file phar:\/\/site.phar\/folder"],["[]"]]
: [[null,"Could not open file phar:\/\/site.phar\/"],["[]"]]
[null,"Could not open file phar:\/\/part.tpl\/page.tpl"]
true
[["packed V, plain part, packed part","packed V, plain part, packed part","[a note]"],["a note",null]]
page.tpl.gz: [["zipped V, plain part"],["[zipped V, plain part]"]]
part.tpl: [["plain part"],["[plain part]"]]
nosuch.gz: [[null,"Could not open file compress.zlib:\/\/nosuch.gz"],["[]"]]
true
Maximum execution time of 1 second exceeded

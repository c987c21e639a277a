--TEST--
Files that change while they are read, that wait, that lead nowhere, that may not be opened
--EXTENSIONS--
posix
--INI--
allow_url_fopen=0
--FILE--
<?php
require __DIR__ . '/../helper.inc';

in_folder_with(['closed.tpl' => 'secret', 'target.tpl' => 'target {v}']);
symlink('loop-b.tpl', 'loop-a.tpl');
symlink('loop-a.tpl', 'loop-b.tpl');
symlink('target.tpl', 'link.tpl');
chmod('closed.tpl', 0);
$user = posix_geteuid();
// A file that root may not read there is not.
$user !== 0 || posix_seteuid(65534);
foreach (['link.tpl', 'loop-a.tpl', 'closed.tpl', 'data:,x'] as $name) {
    echo $name, ': ', json_encode([outcome($name, ['v' => 'V'], false), outcome("[{include $name}]", ['v' => 'V'])]), "\n";
}
posix_seteuid($user);
$server = stream_socket_server('tcp://127.0.0.1:0');
$url = 'http://' . stream_socket_get_name($server, false) . '/x';
echo json_encode([outcome($url, [], false) === [null, "Could not open file $url"], outcome("[{include $url}]"), @stream_socket_accept($server, 0)]), "\n";

// What was there when it was read is delivered: PHP reads ahead.
$content = '{act}' . str_repeat('text ', 20000);
foreach ([['shrinks', fn () => ['', file_put_contents('file.tpl', '')][0]], ['grows', fn () => ['', file_put_contents('file.tpl', 'more', FILE_APPEND)][0]], ['goes', fn () => ['', unlink('file.tpl')][0]]] as [$what, $change]) {
    foreach ([['file.tpl', false], ['{include file.tpl}', true]] as [$template, $isText]) {
        file_put_contents('file.tpl', $content);
        $seen = outcome($template, ['act' => new Doing($change)], $isText);
        $all = substr($content, 5) . 'more';
        echo $what, ': ', json_encode([count($seen), str_starts_with($all, $seen[0]), $what === 'shrinks' || strlen($seen[0]) >= strlen($all) - 4]), "\n";
    }
}

// A FIFO waits for the other end, beyond the time limit, which counts processor time.
posix_mkfifo('fifo.tpl', 0600);
set_time_limit(1);
foreach ([['fifo.tpl', 1.2, false], ['[{include fifo.tpl}]', 0, true]] as [$template, $delay, $isText]) {
    $writer = proc_open("sleep $delay; printf '{v}, ' > fifo.tpl", [], $pipes);
    echo json_encode(outcome($template, ['v' => 'V'], $isText)), "\n";
    proc_close($writer);
}
--EXPECT--
link.tpl: [["target V"],["[target V]"]]
loop-a.tpl: [[null,"Could not open file loop-a.tpl"],["[]"]]
closed.tpl: [[null,"Could not open file closed.tpl"],["[]"]]
data:,x: [[null,"Could not open file data:,x"],["[]"]]
[true,["[]"],false]
shrinks: [1,true,true]
shrinks: [1,true,true]
grows: [1,true,true]
grows: [1,true,true]
goes: [1,true,true]
goes: [1,true,true]
["V, "]
["[V, ]"]

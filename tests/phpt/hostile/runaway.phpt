--TEST--
Runaway templates end in PHP's own limits of memory and time, and shutdown functions still render
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

// Each situation ends its script, so each has a script of its own.
$situations = [
    'memory in the result' => '$text = str_repeat("x", 1 << 20);
        echo template("{dynamic a,l}{dynamic b,l}{dynamic c,l}{text}{/dynamic}{/dynamic}{/dynamic}", ["l" => range(1, 100), "text" => $text], true);',
    'memory in the text' => '$text = str_repeat("x", 1 << 20);
        echo template("{optional missing}" . str_repeat("{text}", 100) . "{/optional}", ["text" => $text], true);',
    'memory in files' => 'file_put_contents(__FILE__ . ".tpl", str_repeat("x", 1 << 20) . "{* a b c}"); chdir(dirname(__FILE__));
        register_shutdown_function("unlink", __FILE__ . ".tpl");
        echo template(str_repeat("{include " . basename(__FILE__) . ".tpl}", 100), [], true);',
    'time' => 'set_time_limit(1);
        echo template("{dynamic a,l}{dynamic b,l}{dynamic c,l}{dynamic d,l}{*::x}{/dynamic}{/dynamic}{/dynamic}{/dynamic}", ["l" => range(1, 1000)], true);',
    'time in a stream that never delivers' => 'class W { public $context; function stream_open() { return true; } function stream_read() { return ""; }
            function stream_eof() { return false; } function stream_stat() { return []; } }
        set_time_limit(1); stream_wrapper_register("never", "W"); echo template("never://x", []);',
    'time in a section of nothing' => 'set_time_limit(1);
        echo template("{dynamic a,l}{dynamic b,l}{dynamic c,l}{dynamic d,l}{/dynamic}{/dynamic}{/dynamic}{/dynamic}", ["l" => range(1, 1000)], true);',
    'time in a long body' => 'ini_set("memory_limit", "1G"); set_time_limit(1);
        echo template("{dynamic l}" . str_repeat("{optional *::x y}{/optional}", 60_000) . "{/dynamic}",
            ["l" => [["x" => str_repeat("a", 2_000_000)]]], true);',
];
// A large template that needs little is not taken for a runaway: its tags do not add up.
[$output] = run_script('$path = __FILE__ . ".tpl"; file_put_contents($path, str_repeat("{addslashes this_is_a_rather_long_name_of_nothing}\n", 500000));
    ini_set("memory_limit", "16M"); echo strlen(template($path, [])); unlink($path);', ['memory_limit' => '128M']);
echo $output, "\n";

$shutdown = 'register_shutdown_function(function () {
    ini_set("memory_limit", -1);
    echo "\n", template("{dynamic r,l}{r::[*]}{/dynamic} rendered at shutdown", ["l" => [1, 2]], true);
});';
foreach ($situations as $name => $code) {
    [$output, $status] = run_script("$shutdown\n$code\necho 'never';", ['memory_limit' => '20M']);
    preg_match('/Fatal error: .*?(?= in \S*SCRIPT|\()/', $output, $error);
    echo $name, ': ', json_encode([$error[0] ?? $output, str_ends_with($output, '01 rendered at shutdown'), str_contains($output, 'never'), $status]), "\n";
}
?>
--EXPECT--
500000
memory in the result: ["Fatal error: Allowed memory size of 20971520 bytes exhausted ",true,false,255]
memory in the text: ["Fatal error: Allowed memory size of 20971520 bytes exhausted ",true,false,255]
memory in files: ["Fatal error: Allowed memory size of 20971520 bytes exhausted ",true,false,255]
time: ["Fatal error: Maximum execution time of 1 second exceeded",true,false,255]
time in a stream that never delivers: ["Fatal error: Maximum execution time of 1 second exceeded",true,false,255]
time in a section of nothing: ["Fatal error: Maximum execution time of 1 second exceeded",true,false,255]
time in a long body: ["Fatal error: Maximum execution time of 1 second exceeded",true,false,255]

--TEST--
Runaway templates end in PHP's own limits, and shutdown functions still render (tests/limits has many more)
--FILE--
<?php
require __DIR__ . '/../helper.inc';

// Each situation ends its script, so each has a script of its own.
$situations = [
    'memory in the result' => '$text = str_repeat("x", 1 << 20);
        echo template("{dynamic a,l}{dynamic b,l}{dynamic c,l}{text}{/dynamic}{/dynamic}{/dynamic}", ["l" => range(1, 100), "text" => $text], true);',
    'time' => 'set_time_limit(1);
        echo template("{dynamic a,l}{dynamic b,l}{dynamic c,l}{dynamic d,l}{*::x}{/dynamic}{/dynamic}{/dynamic}{/dynamic}", ["l" => range(1, 1000)], true);',
    'time in a stream that never delivers' => 'class W { public $context; function stream_open() { return true; } function stream_read() { return ""; }
            function stream_eof() { return false; } function stream_stat() { return []; } }
        set_time_limit(1); stream_wrapper_register("never", "W"); echo template("never://x", []);',
];

$shutdown = 'register_shutdown_function(function () {
    ini_set("memory_limit", -1);
    echo "\n", template("{dynamic r,l}{r::[*]}{/dynamic} rendered at shutdown", ["l" => [1, 2]], true);
});';
foreach ($situations as $name => $code) {
    [$output, $status] = run_script("$shutdown\n$code\necho 'never';", ['memory_limit' => '20M']);
    preg_match('/Fatal error: .*?(?= in \S*SCRIPT|\()/', $output, $error);
    echo $name, ': ', json_encode([$error[0] ?? $output, str_ends_with($output, '01 rendered at shutdown'), str_contains($output, 'never'), $status]), "\n";
}
--EXPECT--
memory in the result: ["Fatal error: Allowed memory size of 20971520 bytes exhausted ",true,false,255]
time: ["Fatal error: Maximum execution time of 1 second exceeded",true,false,255]
time in a stream that never delivers: ["Fatal error: Maximum execution time of 1 second exceeded",true,false,255]

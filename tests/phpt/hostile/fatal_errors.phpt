--TEST--
Memory that runs out in the middle of a call ends the script as usual, and shutdown functions still render
--FILE--
<?php
require __DIR__ . '/../helper.inc';

// Each situation ends its script, so each has a script of its own.
$situations = [
    'memory in __toString' => 'class F { function __toString(): string { return str_repeat("x", 1 << 30); } }
        echo template("{dynamic rows}{*}{/dynamic}", ["rows" => [new F()]], true);',
    'memory in the copy of a value' => '$text = str_repeat("&", 5 << 20);
        echo template("{dynamic rows}{htmlentities *}{/dynamic}", ["rows" => [$text, $text]], true);',
    'memory in an escaped constant' => '$text = str_repeat("\'", 9 << 20);
        echo template("{optional text}{addslashes text}{/optional}", ["text" => $text], true);',
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
memory in __toString: ["Fatal error: Allowed memory size of 20971520 bytes exhausted ",true,false,255]
memory in the copy of a value: ["Fatal error: Allowed memory size of 20971520 bytes exhausted ",true,false,255]
memory in an escaped constant: ["Fatal error: Allowed memory size of 20971520 bytes exhausted ",true,false,255]

--TEST--
A message of five megabytes comes out whole where there is memory for it, else the memory limit ends the call
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$calls = [
    'text' => 'template(str_repeat("text ", 1000000) . "{a::}", [], true);',
    'conversions' => 'template(str_repeat("50% off %99d%n", 350000) . "{a::}", [], true);',
    'percent signs' => 'template(str_repeat("%", 5000000) . "{a::}", [], true);',
    'tag' => 'template("{" . str_repeat("b ", 1250000) . "\'}", [], true);',
    'file name' => 'template(str_repeat("%s", 2500000), []);',
];
foreach ($calls as $name => $call) {
    $ends = [];
    foreach (['64M', '8M'] as $limit) {
        [$output, $status] = run_script('register_shutdown_function(function () { ini_set("memory_limit", -1); echo template("{a}", ["a" => "|in order"], true); });
            set_error_handler(function ($level, $message) { echo strlen($message) > 2400000 ? "whole" : $message; return true; });' . $call, ['memory_limit' => $limit]);
        $ends[] = preg_replace('/^\s*Fatal error: Allowed memory size .*\s/', 'memory', $output) . " $status";
    }
    echo $name, ': ', implode(', ', $ends), "\n";
}
--EXPECT--
text: whole|in order 0, memory|in order 255
conversions: whole|in order 0, memory|in order 255
percent signs: whole|in order 0, memory|in order 255
tag: whole|in order 0, memory|in order 255
file name: whole|in order 0, memory|in order 255

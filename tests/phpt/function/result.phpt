--TEST--
The result is a text, also when it is empty, and null only with a warning
--FILE--
<?php
require __DIR__ . '/../helper.inc';

in_folder_with(['empty.tpl' => '', 'fault.tpl' => '{/dynamic}']);
var_dump(template('', [], true), template('empty.tpl', []));

// A text of its own: changing it changes neither the data nor a later result.
$data = ['v' => str_repeat('v', 20)];
$result = template('{v}', $data, true);
$result[0] = 'X';
var_dump(template('{v}', $data, true) === str_repeat('v', 20));

// The data is left as it was, element by element.
$rows = ['rows' => [['n' => 1], ['n' => 2.5], ['n' => null]], 'v' => 5];
$before = serialize($rows);
next($rows['rows']);
template('{v}{dynamic r,rows}{*::n}{dynamic rows}{r::[*]}{/dynamic}{/dynamic}', $rows, true);
var_dump(serialize($rows) === $before, key($rows['rows']));

// A warning points at the call and can be read later.
var_dump(@template('fault.tpl', []));
$last = error_get_last();
var_dump($last['type'] === E_WARNING, $last['message'], $last['file'] === __FILE__, $last['line'] === __LINE__ - 2);

// Results of many sizes.
foreach ([1, 15, 16, 4091, 4092, 4093, 1000000] as $length) {
    $text = str_repeat('x', $length);
    if (template('{v}', ['v' => $text], true) !== $text || template($text, [], true) !== $text) {
        echo "length $length differs\n";
    }
}
--EXPECT--
string(0) ""
string(0) ""
bool(true)
bool(true)
int(1)
NULL
bool(true)
string(43) "Unexpected closing dynamic tag in fault.tpl"
bool(true)
bool(true)

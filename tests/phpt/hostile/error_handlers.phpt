--TEST--
Error handlers that throw, at a notice inside of a call and at the call's own warning
--FILE--
<?php
require __DIR__ . '/../helper.inc';

/** Renders while every message is thrown. */
function strict(string $template, array $data, bool $isText = true): string
{
    set_error_handler(function (int $level, string $message): never {
        throw new ErrorException($message, 0, $level);
    });
    try {
        $seen = ['result', template($template, $data, $isText)];
    } catch (Throwable $thrown) {
        $seen = [get_class($thrown), $thrown->getMessage(), $thrown->getPrevious()?->getMessage()];
    }
    restore_error_handler();
    return json_encode($seen, JSON_UNESCAPED_SLASHES) . "\n";
}

$data = ['a' => [1], 'rows' => [['n' => [1]], ['n' => 2]]];
echo strict('{a}', $data);

// The call's own warning is thrown as well: the caller sees it in place of null.
echo strict('{/dynamic}', $data);
echo strict('{dynamic rows}{*::x a::}{/dynamic}', $data);
echo strict('nosuch file', $data, false);

// The handler renders itself.
set_error_handler(function (int $level, string $message): bool {
    echo 'handler: ', template('{m} while {dynamic r,list}{r::[*]}{/dynamic}', ['m' => $message, 'list' => [1, 2]], true), "\n";
    return true;
});
echo template('{dynamic r,rows}{r::[*]}{r::*}{r::[*]};{/dynamic}', ['rows' => ['x' => [], 'y' => 'text']], true), "\n";
var_dump(template('{a::}', [], true));
restore_error_handler();

// A handler that takes itself away, and one that returns false.
set_error_handler(function (): bool {
    restore_error_handler();
    return true;
});
echo template('{a}', $data, true), @template('{a}', $data, true), "\n";
set_error_handler(fn () => false);
echo json_encode([@template('{a}{b::}', $data, true), error_get_last()['message']]), "\n";
--EXPECT--
["ErrorException","Array to string conversion",null]
["ErrorException","Unexpected closing dynamic tag in {/dynamic}",null]
["ErrorException","Bad formated parameter'a::': too many : in {dynamic rows}{*::x a::}{/dynamic}",null]
["ErrorException","Could not open file nosuch file",null]
handler: Array to string conversion while 01
xArrayx;ytexty;
handler: Bad formated parameter'a::': too many : in {a::} while 01
NULL
ArrayArray
[null,"Bad formated parameter'b::': too many : in {a}{b::}"]

--TEST--
Bad arguments: PHP's exception for the caller, and a warning before it
--INI--
display_errors=1
html_errors=0
--FILE--
<?php
/** Any call at all: its result or exception, and the warning that PHP has recorded. */
function call(...$arguments): string
{
    error_clear_last();
    try {
        $result = @template(...$arguments);
    } catch (Throwable $thrown) {
        $result = get_class($thrown) . ': ' . $thrown->getMessage();
    }
    return $result . ' | ' . (error_get_last()['message'] ?? 'no warning') . "\n";
}

echo call('{x}');
echo call('{x}', null, true);
echo call('{x}', new ArrayObject(['x' => 1]), true);
echo call([], []);
echo call('{x}', [], []);
echo call('{x}', [], true, 1);
// PHP itself refuses these before the call.
echo call(template: '{x}', userData: []);
echo call('{x}', string_mode: true);

// Named arguments, and what PHP converts.
echo call(string_mode: true, userData: ['x' => 'named'], fileName: '{x}');
echo call(5, [5 => 'no', '5' => 'number'], true);
echo call(new class { public function __toString() { return '{x}'; } }, ['x' => 'Stringable'], 'yes');
echo call('nosuch-file.tpl', [], 0);

// Both reach the page: the warning at the call, the exception where it is caught.
ob_start();
try {
    template('{x}');
} catch (ArgumentCountError $error) {
    $printed = ob_get_clean();
    echo json_encode([str_contains($printed, 'Warning: Error while parsing parameters in '), $error->getLine() === __LINE__ - 3]), "\n";
}
--EXPECT--
ArgumentCountError: template() expects at least 2 arguments, 1 given | Error while parsing parameters
TypeError: template(): Argument #2 ($userData) must be of type array, null given | Error while parsing parameters
TypeError: template(): Argument #2 ($userData) must be of type array, ArrayObject given | Error while parsing parameters
TypeError: template(): Argument #1 ($fileName) must be of type string, array given | Error while parsing parameters
TypeError: template(): Argument #3 ($string_mode) must be of type bool, array given | Error while parsing parameters
ArgumentCountError: template() expects at most 3 arguments, 4 given | Error while parsing parameters
Error: Unknown named parameter $template | no warning
ArgumentCountError: template(): Argument #2 ($userData) not passed | no warning
named | no warning
5 | no warning
Stringable | no warning
 | Could not open file nosuch-file.tpl
[true,true]

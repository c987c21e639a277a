--TEST--
User code that exits in the middle of a call: shutdown functions and destructors still render
--EXTENSIONS--
template
--FILE--
<?php
class Exits
{
    public function __toString(): string
    {
        echo "exits\n";
        exit;
    }
    public function __destruct()
    {
        echo template('{dynamic r,l}{r::[*]}{/dynamic} in a destructor', ['l' => [1, 2]], true), "\n";
    }
}
register_shutdown_function(function () {
    echo template('{dynamic r,l}{r::[*]}{/dynamic} in a shutdown function', ['l' => [1, 2]], true), "\n";
});
register_shutdown_function(function () {
    // Once more, from inside of the call that this one makes.
    echo template('{optional v}{v}{/optional}', ['v' => new Exits()], true);
});
echo template('{dynamic rows}{dynamic *}{*}{/dynamic}{/dynamic}', ['rows' => [['a', new Exits()]]], true);
echo "never\n";
?>
--EXPECT--
exits
01 in a destructor
01 in a shutdown function
exits
01 in a destructor

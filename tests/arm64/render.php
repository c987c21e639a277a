<?php
/**
 * Prints where the module's code lies, then renders a template with the letters that many times:
 *
 *     php render.php TEMPLATE COUNT
 *
 * An L in the template stands for the letters, "row::*::text" holds them in a section of "rows".
 */

declare(strict_types=1);

$letters = str_repeat('letters ', intdiv((int) $argv[2], 8));
template(str_replace('L', $letters, $argv[1]), ['rows' => [['text' => $letters]]], true);
preg_match('~^(\w+)-(\w+) r-xp .*/template\.so$~m', file_get_contents('/proc/self/maps'), $range)
    || throw new Exception('No code of the module is mapped.');
echo "0x$range[1]..0x", dechex(hexdec($range[2]) - 1);

--TEST--
Keywords are prefixes: no blank need follow, the first in the list wins
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$data = ['x' => 'a b&"', 's' => 'plural', 'd' => 'D', ' x' => 'never', 'escape' => 'no', 'rows' => ['r'],
    'Optional' => 'upper', 'op' => 'OP', 'raw' => 'RAW', 'html' => 'HTML', "x\0y" => 'nul'];

check([
    'no blank' => ['{addslashesx}{htmlentitiesx}{htmlspecialcharsx}{rawurlencodex}', $data, 'a b&\\"a b&amp;&quot;a b&amp;&quot;a%20b%26%22'],
    'plural' => ['{optionals}shown{/optional}', $data, 'shown'],
    'plural, two words' => ['{optionals plural}shown{/optional}', $data, 'shown'],
    'word that goes on' => ['{optionald}{d}{/optionally}', $data, 'D'],
    'dynamic and a name' => ['{dynamicrows}{*}{/dynamic}{rdynamicrows}{*}{/rdynamic}', $data, 'rr'],
    'no blank before the section name' => ['{dynamicr,rows}{r::*}{/dynamic}', $data, 'r'],
    'part of a keyword is a name' => ['{op}{raw}{html}{includ}', $data, 'OPRAWHTML{includ}'],
    'upper case is a name' => ['{Optional}', $data, 'upper'],
    'a blank before the keyword' => ["{ optional x}", $data, '{ optional x}'],
    'blanks between and behind' => ["{rawurlencode \t\n\v\f\r x \t\n\v\f\r}", $data, 'a%20b%26%22'],
    'blanks alone are an argument' => ['{addslashes  }{rawurlencode x }', ['  ' => 'two', 'x' => ' '], 'two%20'],
    'blanks alone, sections' => ['{dynamic  }x{/dynamic}{optional }y{/optional}', ['  ' => [1, 2], '' => 1], 'xxy'],
    'a NUL in the argument' => ["{rawurlencode x\0y}", $data, 'nul'],
    'not optional needs its mark at once' => ['{! optional y}', $data, '{! optional y}'],
    'a slash alone' => ['{/}{/x}', ['/x' => 'slash'], '{/}slash'],
]);
?>
--EXPECT--
text: as expected
file: as expected

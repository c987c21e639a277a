--TEST--
References in the data, such as foreach leaves behind: they print, but no path leads through them
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$rows = [['n' => 'a', 'c' => [1]], ['n' => 'b', 'c' => [2]]];
foreach ($rows as &$row) {
    $row['n'] .= '!';
}
unset($row);
// The elements stay references, each to a value that nothing else refers to.
$texts = ['x', 'y'];
foreach ($texts as &$text) {
    $text = "<$text>";
}
$list = [1, 2];
$num = [7, 8];
$data = [
    'rows' => $rows,
    'texts' => $texts,
    'linked' => &$list,
    'holds' => ['list' => &$list, 'text' => &$text],
    'num' => ['num' => &$num, 'x' => 1],
    'both' => &$both,
    'each' => [['c' => &$list], ['c' => [3]], ['c' => ['num' => &$num]]],
];
$both = ['num' => [9], 'x' => 1];
in_folder_with(['file.tpl' => 'no']);
$file = 'file.tpl';

check([
    'elements of a constant array' => ['{dynamic rows}[{*::n}]{/dynamic}', $data, '[][]'],
    'a path through the element' => ['{rows::0::n}{rows::1::n}', $data, '{rows::0::n}{rows::1::n}'],
    'reference elements print' => ['{dynamic texts}{*}{/dynamic}{texts::1}', $data, '<x><y><y>'],
    'and are escaped while rendering' => ['{dynamic texts}{htmlspecialchars *}{/dynamic}', $data, '&lt;x&gt;&lt;y&gt;'],
    'but not as constants' => ['[{htmlspecialchars texts::0}{htmlspecialchars texts::1}]', ['texts' => [&$text, 'k']], '[k]'],
    'a constant section follows the reference' => ['{dynamic linked}{*}{/dynamic}{dynamic holds::list}{*}{/dynamic}', $data, '1212'],
    'a path does not' => ['[{linked::0}][{dynamic linked::0}no{/dynamic}]', $data, '[{linked::0}][]'],
    'num of a constant array may be a reference' => ['{dynamic num}{*}{/dynamic}', $data, '78'],
    'num is not looked up in a reference' => ['{dynamic both}{[*]},{/dynamic}', $data, 'num,x,'],
    'an inner section does not follow the reference' => ['{dynamic each}[{dynamic *::c}{*}{/dynamic}]{/dynamic}', $data, '[][3][]'],
    'an element that is a reference does not repeat' => ['{dynamic x}[{dynamic *}{*}{/dynamic}]{/dynamic}', ['x' => [&$list, [5]]], '[][5]'],
    'an include name that is a reference is no name' => ['a{include f}b', ['f' => &$file], 'ab'],
]);
?>
--EXPECT--
text: as expected
file: as expected

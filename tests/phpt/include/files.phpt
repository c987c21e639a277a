--TEST--
Includes: chains, names from the data, missing files, what belongs to which file
--FILE--
<?php
require __DIR__ . '/../helper.inc';

in_folder_with([
    'header' => 'literal header',
    'head.tpl' => '<{title}>',
    'row.tpl' => '{r::[*]}={r::*};',
    'loop.tpl' => '{dynamic i,items}[{include row.tpl}{i::*}]{/dynamic}',
    'same-name.tpl' => '{dynamic r,items}{r::*}{/dynamic}',
    'chain1.tpl' => '1{include chain2.tpl}1',
    'chain2.tpl' => '2{include chain3.tpl}2{include chain3.tpl}2',
    'chain3.tpl' => '{v}',
    'braces.tpl' => '{{}}',
    'half {.tpl' => 'no',
    'tail.tpl' => 'ends in a brace {',
    'open-tag.tpl' => 'ends in a tag {v',
    'sub/dir.tpl' => '{include beside.tpl}',
    'sub/beside.tpl' => 'beside in sub',
    'beside.tpl' => 'beside in the working folder',
    'a b.tpl' => 'a name with a blank',
    '5' => 'a number as name',
    '5.tpl' => 'five',
]);

$data = ['title' => 'T', 'v' => 'V', 'rows' => ['a', 'b'], 'items' => ['x', 'y'],
    'file' => 'head.tpl', 'nul' => "head.tpl\0.gone", 'number' => 5, 'null' => null, 'array' => ['head.tpl'],
    'names' => ['first' => 'chain3.tpl'], 'header' => 7, 'nowhere' => 'nosuch.tpl', 'list' => [['f' => 'head.tpl']]];

check([
    'no blank' => ['a{includehead.tpl}b', $data, 'a<T>b'],
    'a chain' => ['{include chain1.tpl}', $data, '12V2V21'],
    'braces' => ['{include braces.tpl}', $data, '{}'],
    'a brace at the end of a file is text' => ['{include tail.tpl}v}', $data, 'ends in a brace {v}'],
    'a tag at the end of a file is closed there' => ['{include open-tag.tpl}}', $data, 'ends in a tag V}'],
    'a blank in the name' => ['{include   a b.tpl  }', $data, 'a name with a blank'],
    'quotes are part of the name' => ["[{include 'head.tpl'}]", $data, '[]'],

    'name from the data' => ['{include file}', $data, '<T>'],
    'name from the data, by a path' => ['{include names::first}', $data, 'V'],
    'name from the data, up to NUL' => ['{include nul}', $data, '<T>'],
    'no text in the data: the name as written' => ['{include header}', $data, 'literal header'],
    'a number is never found at the root' => ['{include 5}', [5 => 'head.tpl'] + $data, 'a number as name'],
    'NUL in the tag names no file' => ["[{include head.tpl\0}]", $data, '[]'],

    'names are relative to the working folder' => ['{include sub/dir.tpl}', $data, 'beside in the working folder'],

    'a section in the file' => ['{dynamic r,rows}{include loop.tpl}{/dynamic}', $data, '[0=a;x][0=a;y][1=b;x][1=b;y]'],
    'the same section name in the file: outer wins' => ['{dynamic r,rows}{include same-name.tpl};{/dynamic}', $data, 'aa;bb;'],

    'no argument, a number as the empty key' => ['{include}', ['' => 5], null, 'Include block bad parameter: no parameter found in <FILE>'],
    'an element' => ['{dynamic r,list}{include r::*::f}{/dynamic}', $data, null,
        "Include block bad parameter 'r::*::f': asterisk in filename is forbidden in <FILE>"],
    'a Windows path is no reference' => ['[{include c:\\nosuch.tpl}]', $data, '[]'],
    'an inner brace' => ['[{include half {.tpl}]', ['half {{{{{{{' => 'no'], '['],
]);
--EXPECT--
as expected

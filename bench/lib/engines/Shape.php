<?php

declare(strict_types=1);

namespace Bench\engines;

use Bench\Engine;

use function template;

/** String templates that repeat one thing, up to any size: what someone would write to make a call slow. */
final class Shape implements Engine
{
    /** [before, repeated, after, repeated behind that] by what is repeated; a # is a number, another one at each repetition. */
    public const ALL = [
        '`{{` in the text' => ['', '{{', '', ''],
        '`}` in the text' => ['', '}', '', ''],
        '`{` in a tag' => ['{v', '{', '', ''],
        'one tag, never closed' => ['{', 'name', '', ''],
        'tags with a value' => ['', '{v}', '', ''],
        'tags without one' => ['', '{w}', '', ''],
        'tags in a section' => ['{dynamic r,list}', '{r::*}', '{/dynamic}', ''],
        'keys in a reference' => ['{a', '::b', '}', ''],
        '`::` in a reference' => ['{a', '::', '}', ''],
        'alternatives' => ['{a', ' a', '}', ''],
        'alternatives in a section' => ['{dynamic r,list}{r::*::x', ' r::*::x', '}{/dynamic}', ''],
        'quotes' => ['{a ', "'", '}', ''],
        'quotes in a comparison' => ['{optional v ', "'", '}x{/optional}', ''],
        'blanks in a tag' => ['{a', ' ', '}', ''],
        'blanks behind a keyword' => ['{optional', ' ', '}{/optional}', ''],
        '`%` in a message' => ['{/optional}', '%', '', ''],
        'includes' => ['', '{include data:,x}', '', ''],
        'conditions in a section' => ['{dynamic r,list}', '{optional r::*}x{/optional}', '{/dynamic}', ''],
        'sections in a row' => ['', '{optional v}x{/optional}', '', ''],
        'sections in each other' => ['', '{dynamic list}', '', '{/dynamic}'],
        'named sections in each other' => ['', '{dynamic #,list}', '', '{/dynamic}'],
        'tags that name the section around them' => ['', '{dynamic #,list}{#::*}', '', '{/dynamic}'],
        'tags that name no section' => ['', '{dynamic #,list}{x#::*}', '', '{/dynamic}'],
    ];

    private readonly string $text;

    public function __construct(string $kind, int $bytes)
    {
        [$before, $repeated, $after, $behind] = self::ALL[$kind];
        $count = \intdiv($bytes - \strlen($before . $after), \strlen($repeated . $behind));
        $this->text = $before . self::repeat($repeated, $count) . $after . \str_repeat($behind, $count);
    }

    private static function repeat(string $text, int $count): string
    {
        if (!\str_contains($text, '#')) {
            return \str_repeat($text, $count);
        }
        $repeated = '';
        for ($i = 0; $i < $count; $i++) {
            $repeated .= \str_replace('#', (string) $i, $text);
        }
        return $repeated;
    }

    /** Some are refused with a warning, which counts as well. */
    public function render(): string
    {
        return @template($this->text, ['v' => 'value', 'list' => ['element']], true) ?? '';
    }
}

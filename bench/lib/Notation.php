<?php

declare(strict_types=1);

namespace Bench;

/**
 * Writes one text in the notation of every engine, so that a template is not kept four times. The tags of the text:
 *
 *     {a}                        the value of a top-level name; of a section, {row} and {row.key}
 *     {escape a}                 the same, escaped for HTML
 *     {either a b}               the first of two that is there
 *     {if a} … {/if}             what is written if the value is true, and there at all
 *     {unequal a TEXT} … {/if}   what is written if it is another one
 *     {each row a} … {/each}     a section
 *     {file name}                another file of the workload
 *
 * A line break right after a tag would be eaten by some engines and kept by others, so there must be none.
 */
final class Notation
{
    private const TAG = '\{(?:(escape|either|if|unequal|each|file) )?([\w.]+)(?: ([\w.]+))?\}|\{(\/if|\/each)\}';

    /** What each engine writes: %1$s and %2$s stand for what the tag names. */
    private const FORMS = [
        'tpl' => [
            '' => '{%1$s}',
            'escape' => '{htmlspecialchars %1$s}',
            'either' => '{%1$s %2$s}',
            'if' => '{optional %1$s}',
            'unequal' => '{!optional %1$s %2$s}',
            '/if' => '{/optional}',
            'each' => '{dynamic %1$s,%2$s}',
            '/each' => '{/dynamic}',
            'file' => '{include %1$s.tpl}',
        ],
        'php' => [
            '' => '<?= %1$s ?>',
            'escape' => '<?= htmlspecialchars(%1$s, ENT_COMPAT, \'ISO-8859-1\') ?>',
            'either' => '<?= %1$s ?? %2$s ?>',
            'if' => '<?php if (!empty(%1$s)): ?>',
            'unequal' => '<?php if (%1$s != %2$s): ?>',
            '/if' => '<?php endif ?>',
            'each' => '<?php foreach (%2$s as $%1$s): ?>',
            '/each' => '<?php endforeach ?>',
            'file' => '<?php include __DIR__ . \'/../%1$s.php\' ?>',
        ],
        'twig' => [
            '' => '{{ %1$s }}',
            'escape' => '{{ %1$s|e }}',
            'either' => '{{ %1$s ?? %2$s }}',
            'if' => '{%% if %1$s %%}',
            'unequal' => '{%% if %1$s != %2$s %%}',
            '/if' => '{%% endif %%}',
            'each' => '{%% for %1$s in %2$s %%}',
            '/each' => '{%% endfor %%}',
            'file' => '{%% include \'%1$s.twig\' %%}',
        ],
        'smarty' => [
            '' => '{%1$s}',
            'escape' => '{%1$s|escape}',
            'either' => '{%1$s|default:%2$s}',
            'if' => '{if !empty(%1$s)}',
            'unequal' => '{if %1$s != %2$s}',
            '/if' => '{/if}',
            'each' => '{foreach %2$s as $%1$s}',
            '/each' => '{/foreach}',
            'file' => '{include file=\'%1$s.smarty\'}',
        ],
    ];

    /** Writes $folder/$name with the ending of each engine; the folder is called after the workload. */
    public static function write(string $folder, string $name, string $text): void
    {
        if (\preg_match('/(?:' . self::TAG . ')\n/', $text)) {
            throw new \LogicException("A tag ends a line in the template '$name'");
        }
        \preg_match_all('/\{each (\w+)/', $text, $found);
        $sections = $found[1];
        foreach (\array_keys(self::FORMS) as $engine) {
            $tag = static fn (array $tag): string => self::tag($engine, $tag, $sections, \basename($folder));
            \file_put_contents("$folder/$name.$engine", \preg_replace_callback('/' . self::TAG . '/', $tag, $text));
        }
    }

    /** @param list<string> $tag @param list<string> $sections the names of all sections in the text */
    private static function tag(string $engine, array $tag, array $sections, string $workload): string
    {
        [, $kind, $first, $second, $closing] = $tag + ['', '', '', '', ''];
        $value = static fn (string $name): string => self::reference($engine, \explode('.', $name), $sections);
        [$first, $second] = match ($kind) {
            'file' => ["$workload/$first", ''],
            'each' => [$first, $value($second)],
            'unequal' => [$value($first), $second],
            default => [$value($first), $value($second)],
        };
        return \sprintf(self::FORMS[$engine][$kind . $closing], $first, $second);
    }

    /** @param non-empty-list<string> $path @param list<string> $sections */
    private static function reference(string $engine, array $path, array $sections): string
    {
        $isOfSection = \in_array($path[0], $sections, true);
        $first = \array_shift($path);
        $keys = \array_map(static fn (string $key): string => "['$key']", $path);
        return match ($engine) {
            'tpl' => \implode('::', [$first, ...($isOfSection ? ['*'] : []), ...$path]),
            'php' => ($isOfSection ? "\$$first" : "\$data['$first']") . \implode('', $keys),
            'twig' => $first . \implode('', $keys),
            'smarty' => \implode('.', ["\$$first", ...$path]),
        };
    }
}

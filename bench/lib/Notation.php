<?php

declare(strict_types=1);

namespace Bench;

/**
 * Writes one text in the notation of every engine, for the workloads whose templates are too long, or too
 * many, to be kept four times. The text knows three tags: {name} prints a value, {escape name} escapes it for
 * HTML, {file name} takes in another file of the workload.
 *
 * A line break right after a tag would be eaten by some engines and kept by others, so there must be none.
 */
final class Notation
{
    /** What each engine writes for a tag: %1$s is the name, %2$s the workload's. */
    private const FORMS = [
        'tpl' => [
            '' => '{%1$s}',
            'escape' => '{htmlspecialchars %1$s}',
            'file' => '{include %2$s/%1$s.tpl}',
        ],
        'php' => [
            '' => '<?= $data[\'%1$s\'] ?>',
            'escape' => '<?= htmlspecialchars($data[\'%1$s\'], ENT_COMPAT, \'ISO-8859-1\') ?>',
            'file' => '<?php include __DIR__ . \'/%1$s.php\' ?>',
        ],
        'twig' => [
            '' => '{{ %1$s }}',
            'escape' => '{{ %1$s|e }}',
            'file' => '{%% include \'%2$s/%1$s.twig\' %%}',
        ],
        'smarty' => [
            '' => '{$%1$s}',
            'escape' => '{$%1$s|escape}',
            'file' => '{include file=\'%2$s/%1$s.smarty\'}',
        ],
    ];

    /** Writes $folder/$name with the ending of each engine; the folder is called after the workload. */
    public static function write(string $folder, string $name, string $text): void
    {
        $workload = \basename($folder);
        if (\str_contains($text, "}\n")) {
            throw new \LogicException("A tag ends a line in the template '$name'");
        }
        foreach (self::FORMS as $ending => $forms) {
            $translated = \preg_replace_callback(
                '/\{(?:(escape|file) )?(\w+)\}/',
                static fn (array $tag): string => \sprintf($forms[$tag[1]], $tag[2], $workload),
                $text,
            );
            \file_put_contents("$folder/$name.$ending", $translated);
        }
    }
}

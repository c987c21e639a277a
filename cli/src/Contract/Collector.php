<?php

declare(strict_types=1);

namespace TemplateCli\Contract;

use TemplateCli\Language\Keyword;
use TemplateCli\Language\Node;
use TemplateCli\Language\Reference;
use TemplateCli\Language\ReferenceKind;
use TemplateCli\Language\Scan;
use TemplateCli\Language\SyntaxFault;

/** Walks through a template and its includes, as they are rendered when all is there, and notes what each tag asks for. */
final class Collector
{
    /** Files that include the next one twice, forty levels deep, are not followed to their end. */
    private const int MOST_FILES = 10_000;

    /** @var list<array{string, Shape, int}> open repeated sections: the name, what is repeated, conditions around it */
    private array $sections = [];
    /** Conditional sections that are open. */
    private int $conditions = 0;
    private int $files = 0;

    public function __construct(private readonly Contract $contract)
    {
    }

    public function file(Scan $scan): void
    {
        ++$this->files;
        $this->nodes($scan);
    }

    private function nodes(Scan $scan, ?Node $section = null): void
    {
        foreach ($scan->nodes($section) as $node) {
            if ($node->refused && $node->tag->keyword !== Keyword::Variable) {
                continue;
            }
            match ($node->tag->keyword) {
                Keyword::Variable => $this->variable($node),
                Keyword::Optional, Keyword::NotOptional => $this->condition($scan, $node),
                Keyword::Dynamic, Keyword::Rdynamic => $this->section($scan, $node),
                Keyword::Include => $this->include($node),
                default => $this->note($node, $node->reference, UseKind::Escaped, $node->tag->keyword->value),
            };
        }
    }

    private function variable(Node $node): void
    {
        $references = $node->variable->references ?? [];
        foreach ($references as $number => $text) {
            try {
                $reference = Reference::parse($text);
            } catch (SyntaxFault) {
                return;
            }
            $others = array_values(array_diff_key($references, [$number => true]));
            $this->note($node, $reference, UseKind::Text, '', $others, $node->variable->default !== null);
        }
    }

    private function condition(Scan $scan, Node $node): void
    {
        $reference = $node->reference;
        if ($node->isComment()) {
            return;
        }
        [$kind, $detail] = match (true) {
            $reference->kind === ReferenceKind::SectionKey => [UseKind::KeyComparison, $node->compare],
            $node->compare !== '' => [UseKind::Comparison, self::unquoted($node->compare)],
            default => [UseKind::Condition, ''],
        };
        $shape = $this->note($node, $reference, $kind, $detail);
        if ($node->tag->keyword === Keyword::NotOptional) {
            $this->contract->handled[$node->text] = true;
            $shape === null || $kind === UseKind::KeyComparison ?: $shape->mayBeMissing = true;
        }
        ++$this->conditions;
        $this->nodes($scan, $node);
        --$this->conditions;
    }

    private static function unquoted(string $compare): string
    {
        return preg_match("/'(.*)'/s", $compare, $quoted) === 1 ? $quoted[1] : $compare;
    }

    private function section(Scan $scan, Node $node): void
    {
        $shape = $this->note($node, $node->reference, UseKind::Section);
        if ($shape === null) {
            return;
        }
        $shape->element ??= new Shape();
        $this->sections[] = [$node->name, $shape, $this->conditions];
        $this->nodes($scan, $node);
        array_pop($this->sections);
    }

    private function include(Node $node): void
    {
        if ($node->included !== null && $this->files < self::MOST_FILES) {
            $this->file($node->included);

            return;
        }
        $this->contract->unknown["what {{$node->tag->content}} brings in"] ??= $node->place();
        // "side.tpl" could be a name in the data as well; it hardly ever is.
        if ($node->included === null && strpbrk($node->text, './') === false) {
            $this->note($node, $node->reference, UseKind::File);
        }
    }

    /** @param list<string> $alternatives */
    private function note(
        Node $node,
        Reference $reference,
        UseKind $kind,
        string $detail = '',
        array $alternatives = [],
        bool $hasDefault = false,
    ): ?Shape {
        $isRoot = $reference->kind === ReferenceKind::Root;
        $section = $isRoot ? null : $this->open($reference->section);
        if (!$isRoot && $section === null) {
            $this->contract->unknown["the section that {{$node->tag->content}} refers to"] ??= $node->place();

            return null;
        }
        if ($reference->kind === ReferenceKind::SectionKey) {
            $shape = $section[1];
            $kind = $kind === UseKind::Text || $kind === UseKind::Escaped ? UseKind::Key : $kind;
        } else {
            $shape = ($isRoot ? $this->contract->root : $section[1]->element)->at($reference->path);
        }
        $isConditional = $this->conditions > ($section[2] ?? 0);
        $needsText = $isRoot && $kind === UseKind::Escaped;
        $shape->add(new Usage($kind, $node->place(), $isConditional, $hasDefault, $alternatives, $detail, $needsText));

        return $shape;
    }

    /** @return ?array{string, Shape, int} */
    private function open(string $name): ?array
    {
        return $name === ''
            ? $this->sections[array_key_last($this->sections) ?? -1] ?? null
            : array_find($this->sections, static fn (array $section): bool => $section[0] === $name);
    }
}

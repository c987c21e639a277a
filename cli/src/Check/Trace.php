<?php

declare(strict_types=1);

namespace TemplateCli\Check;

use TemplateCli\Language\Files;
use TemplateCli\Language\Keyword;
use TemplateCli\Language\Lookup;
use TemplateCli\Language\Node;
use TemplateCli\Language\Reference;
use TemplateCli\Language\ReferenceKind;
use TemplateCli\Language\Scan;
use TemplateCli\Language\Slot;
use TemplateCli\Language\SyntaxFault;
use TemplateCli\Language\UserData;

/**
 * Goes the way through a template that rendering goes with these data, and notes each tag that does not print what its
 * author expects. What rendering does not come by, such as a hidden section, is not looked at.
 */
final class Trace
{
    /** @var list<Repetition> the repeated sections that are open, outermost first */
    private array $sections = [];

    /**
     * @param array<string, true> $handled what "!optional" tags name: that it may be missing was thought of
     * @param array<string, array<string, true>> $named for a path of the data, the keys of it that tags name
     * @param ?\Closure(Node, string|\Stringable): void $print is told each text that a tag leaves in the page
     */
    public function __construct(
        private readonly Slot $root,
        private readonly Problems $problems,
        private readonly array $handled,
        private readonly array $named,
        private readonly ?\Closure $print = null,
    ) {
    }

    /** @param ?Node $section the section whose body it is; null for the whole file */
    public function body(Scan $scan, ?Node $section = null): void
    {
        foreach ($scan->nodes($section) as $node) {
            if ($node->refused) {
                continue;
            }
            match ($node->tag->keyword) {
                Keyword::Variable => $this->variable($node),
                Keyword::Optional, Keyword::NotOptional => $this->condition($scan, $node),
                Keyword::Dynamic, Keyword::Rdynamic => $this->section($scan, $node),
                Keyword::Include => $this->include($node),
                default => $this->escaping($node),
            };
        }
    }

    private function variable(Node $node): void
    {
        $tag = $node->variable;
        $isLate = false;
        $failed = [];
        foreach ($tag->references as $number => $text) {
            try {
                $reference = Reference::parse($text);
            } catch (SyntaxFault $fault) {
                $this->problems->addFault($node->place(), $fault->getMessage());

                return;
            }
            $isLate = $isLate || $reference->kind !== ReferenceKind::Root;
            $found = $this->find($reference);
            if ($found instanceof Slot) {
                $hasNext = $tag->default !== null || $number < count($tag->references) - 1;
                $this->printed($node, $found, $hasNext);

                return;
            }
            $failed[] = [$reference, $text, $found];
        }
        $stays = $isLate ? null : "{{$tag->content}}";
        $this->tell($node, $tag->default ?? $stays ?? '');
        $this->notPrinted($node, $failed, $tag->default !== null, $stays === null ? 'prints nothing' : 'the tag itself stays in the page');
    }

    private function escaping(Node $node): void
    {
        $found = $this->find($node->reference);
        if (!$found instanceof Slot) {
            $this->notPrinted($node, [[$node->reference, $node->text, $found]], false, 'prints nothing');
        } elseif ($node->reference->kind !== ReferenceKind::Root) {
            $this->printed($node, $found, false);
        } elseif ($found->isReference || !is_string($found->value)) {
            $message = Value::name($found) . ", of which {$node->tag->keyword->value} prints nothing at the top level; only texts are printed";
            $this->problems->add($node, Rule::Silent, $found->path, $message);
        } else {
            $this->escapedText($node, $found);
        }
    }

    private function escapedText(Node $node, Slot $found): void
    {
        $escape = $node->tag->keyword->value;
        $isHtml = str_starts_with($escape, 'html');
        if ($isHtml && $found->value !== '' && $escape($found->value, ENT_COMPAT | ENT_HTML401, null) === '') {
            $message = "a text that is not valid in the charset, of which $escape prints nothing at the top level";
            $this->problems->add($node, Rule::InvalidText, $found->path, $message);

            return;
        }
        $this->text($node, $found, !$isHtml);
    }

    /** A value that is written as PHP converts it to text. */
    private function printed(Node $node, Slot $slot, bool $hasNext): void
    {
        $value = $slot->value;
        if (is_array($value)) {
            $this->problems->add($node, Rule::ArrayText, $slot->path, 'an array, which is printed as "Array"');
            $this->tell($node, 'Array');
        } elseif (Value::hasNoText($slot)) {
            $this->problems->add($node, Rule::ObjectText, $slot->path, Value::name($slot) . ' has no text: template() throws');
        } elseif ($hasNext && ($value === null || $value === false)) {
            $message = Value::name($slot) . ', which is printed as nothing; only a name that is not there gives way to what stands behind it';
            $this->problems->add($node, Rule::BlockedDefault, $slot->path, $message);
        } elseif ($value === null || $value === false) {
            $this->problems->add($node, Rule::PrintsNothing, $slot->path, Value::name($slot) . ', which is printed as nothing');
        } else {
            $this->text($node, $slot, false);
        }
    }

    private function text(Node $node, Slot $slot, bool $isWhole): void
    {
        if (is_object($slot->value)) {
            // Its text is not asked for: that would be a call that rendering does not make.
            $this->tell($node, $slot->value);

            return;
        }
        $text = (string) $slot->value;
        $end = $isWhole ? false : strpos($text, "\0");
        if ($end !== false) {
            $message = "a text with a NUL byte, where it ends after $end of " . strlen($text) . ' bytes';
            $this->problems->add($node, Rule::NulByte, $slot->path, $message);
            $text = substr($text, 0, $end);
        }
        $this->tell($node, $text);
    }

    private function tell(Node $node, string|\Stringable $text): void
    {
        $this->print === null ?: ($this->print)($node, $text);
    }

    /** @param list<array{Reference, string, Lookup|string}> $failed each reference, as written, and how far it led */
    private function notPrinted(Node $node, array $failed, bool $hasDefault, string $effect): void
    {
        $missing = null;
        foreach ($failed as [$reference, $text, $found]) {
            if ($found instanceof Lookup && $this->blocked($node, $reference, $found)) {
                return;
            }
            $missing ??= $found;
        }
        if ($hasDefault || $missing === null || $node->tag->swallowed) {
            return;
        }
        [$reference, $text] = $failed[0];
        if (is_string($missing)) {
            $this->problems->add($node, Rule::NoSection, [], "\"$text\": $missing; $effect");

            return;
        }
        $others = array_slice(array_column($failed, 1), 1);
        $also = $others === [] ? '' : ', nor "' . implode('", "', $others) . '"';
        $this->missing($node, $reference, $missing, "there is no \"{$reference->path[$missing->steps]}\"$also: $effect");
    }

    private function missing(Node $node, Reference $reference, Lookup $lookup, string $message): void
    {
        $path = [...$lookup->last->path, ...array_slice($reference->path, $lookup->steps)];
        $sections = $this->sections;
        $note = fn (): string => Advice::for($reference, $lookup, $this->root, $sections);
        $this->problems->add($node, Rule::Missing, $path, $message, $note);
    }

    /** Did the path end at something that no path goes through? */
    private function blocked(Node $node, Reference $reference, Lookup $lookup): bool
    {
        if ($lookup->slot !== null) {
            return false;
        }
        $last = $lookup->last;
        $key = $reference->path[$lookup->steps];
        $rest = implode('::', array_slice($reference->path, $lookup->steps));
        $isNumber = (string) (int) $key === $key;
        $why = match (true) {
            !$last->isOpen() => Value::isNothing($last) ? null : Value::name($last) . ", through which no path goes: \"$rest\" is not found in it",
            $isNumber && $last->path === [] && array_key_exists($key, $last->value) => 'a path cannot begin with a number',
            $isNumber && $key[0] === '-' && array_key_exists($key, $last->value) => "a negative number is no key that a path can name: \"$key\"",
            default => null,
        };
        if ($why !== null) {
            $this->problems->add($node, Rule::Path, $last->isOpen() ? [...$last->path, $key] : $last->path, $why);
        }

        return $why !== null;
    }

    private function condition(Scan $scan, Node $node): void
    {
        $reference = $node->reference;
        $isNegated = $node->tag->keyword === Keyword::NotOptional;
        if ($reference->kind === ReferenceKind::SectionKey) {
            $section = $this->open($reference);
            if ($section === null) {
                $this->noSection($node);
            } elseif (($section->key === $node->compare) !== $isNegated) {
                $this->body($scan, $node);
            }

            return;
        }
        $found = $this->find($reference);
        if (is_string($found)) {
            $this->noSection($node);

            return;
        }
        $slot = $found instanceof Slot ? $found : null;
        if ($slot === null) {
            $this->blocked($node, $reference, $found);
        } elseif ($node->compare === '') {
            $this->visible($node, $slot);
        } else {
            $this->compared($node, $slot);
        }
        if (Value::isShown($slot, $node->compare) !== $isNegated) {
            $this->body($scan, $node);
        }
    }

    private function noSection(Node $node): void
    {
        $message = "\"$node->text\": no repeated section of this name is open; the body is never written";
        $this->problems->add($node, Rule::NoSection, [], $message);
    }

    private function visible(Node $node, Slot $slot): void
    {
        if (!$slot->isOpen() || !array_key_exists('visible', $slot->value) || count($slot->value) === 1) {
            return;
        }
        $isSwitch = is_bool($slot->value['visible']) || in_array($slot->value['visible'], [0, 1], true);
        if (!$isSwitch || !$this->namesOthers($slot, 'visible')) {
            $message = 'the entry "visible" decides this condition, not the array that it is in';
            $this->problems->add($node, Rule::Visible, [...$slot->path, 'visible'], $message);
        }
    }

    private function compared(Node $node, Slot $slot): void
    {
        $value = $slot->value;
        $text = Value::unquoted($node->compare);
        $why = match (true) {
            $slot->isReference => 'a PHP reference, which equals no text',
            is_float($value) => "the float $value, which equals no text",
            is_array($value) => 'an array, which equals no text',
            is_object($value) => Value::name($slot) . ' equals no text',
            is_bool($value) => Value::name($slot) . ': what a boolean equals is left to chance; compare without a text',
            is_int($value) && (string) (int) $text !== $text && Value::isShown($slot, $node->compare)
                => "the number $value equals \"$text\", which is read as " . Value::leadingInteger($text),
            is_string($value) && str_contains($value, "\0") => 'a text with a NUL byte, which is compared up to there',
            default => null,
        };
        if ($why !== null) {
            $this->problems->add($node, Rule::Compared, $slot->path, $why);
        }
    }

    private function section(Scan $scan, Node $node): void
    {
        $reference = $node->reference;
        if ($reference->kind === ReferenceKind::Root) {
            $iterated = Iterated::overTop($this->root, $reference->path);
        } else {
            $section = $this->open($reference);
            if ($section === null) {
                $this->noSection($node);

                return;
            }
            $iterated = Iterated::overElement($section->element, $reference->path);
        }
        $this->num($node, $iterated);
        if ($iterated->slot === null) {
            $this->notRepeated($node, $reference, $iterated);

            return;
        }
        $this->repeat($scan, $node, $iterated->slot);
    }

    private function repeat(Scan $scan, Node $node, Slot $slot): void
    {
        $elements = is_object($slot->value) ? get_mangled_object_vars($slot->value) : $slot->value;
        $source = $slot->withElements($elements);
        $keys = array_keys($elements);
        $this->sections[] = $repetition = new Repetition($node->name);
        foreach ($node->tag->keyword === Keyword::Rdynamic ? array_reverse($keys) : $keys as $key) {
            $repetition->key = is_int($key) ? sprintf('%u', $key) : $key;
            $repetition->element = $source->at($key);
            $this->body($scan, $node);
        }
        array_pop($this->sections);
    }

    private function notRepeated(Node $node, Reference $reference, Iterated $iterated): void
    {
        $found = $iterated->lookup->slot;
        $isHandled = isset($this->handled[$node->text]);
        if ($iterated->num !== null || ($isHandled && ($found === null || Value::isNothing($found)))) {
            return;
        }
        if ($found !== null) {
            $message = Value::name($found) . ', which is nothing to repeat: the section is not written';
            $this->problems->add($node, Rule::NoArray, $found->path, $message);
        } elseif (!$this->blocked($node, $reference, $iterated->lookup)) {
            $key = $reference->path[$iterated->lookup->steps];
            $this->missing($node, $reference, $iterated->lookup, "there is no \"$key\": the section is not written");
        }
    }

    private function num(Node $node, Iterated $iterated): void
    {
        if ($iterated->num === null) {
            return;
        }
        if ($iterated->slot === null) {
            $what = Value::name($iterated->num);
            $this->problems->add($node, Rule::Num, $iterated->num->path, "$what: the section goes over this entry instead of its array, and writes nothing");
        } elseif (count($iterated->lookup->slot->value) > 1 && !$this->namesOthers($iterated->lookup->slot, 'num')) {
            $this->problems->add($node, Rule::Num, $iterated->num->path, 'the section goes over this entry, and not over the others of its array');
        }
    }

    /** Do tags name other entries of this array, so that the special one is there on purpose? */
    private function namesOthers(Slot $array, string $special): bool
    {
        $named = $this->named[self::generalised($array->path)] ?? [];
        $others = array_diff_key($array->value, [$special => true, 'num' => true, 'visible' => true]);
        $unknown = array_diff_key($others, $named);

        return count($unknown) < count($others) && !array_any($unknown, static fn (mixed $value): bool => is_array($value));
    }

    /** @param list<int|string> $path */
    private static function generalised(array $path): string
    {
        return implode('::', array_map(static fn (int|string $key): string => is_int($key) ? '*' : $key, $path));
    }

    private function include(Node $node): void
    {
        if ($node->included !== null) {
            $this->body($node->included);
        } elseif (!Files::isOpaque($node->file)) {
            $slot = UserData::lookup($this->root, $node->reference->path)->slot;
            $note = $slot === null || ($slot->value === $node->file && !$slot->isReference)
                ? null
                : static fn (): string => Value::name($slot) . " in the data names no file: the tag's own text does";
            $message = "there is no file \"$node->file\": nothing is included";
            $this->problems->add($node, Rule::MissingInclude, $slot->path ?? [], $message, $note);
        }
    }

    /** The value; or how far the path led; or why there is none to begin with. */
    private function find(Reference $reference): Slot|Lookup|string
    {
        if ($reference->kind === ReferenceKind::Root) {
            $lookup = UserData::lookup($this->root, $reference->path);

            return $lookup->slot ?? $lookup;
        }
        $section = $this->open($reference);
        if ($section === null) {
            return $reference->section === ''
                ? 'no repeated section is open here'
                : "no repeated section named \"$reference->section\" is open here";
        }
        if ($reference->kind === ReferenceKind::SectionKey) {
            return new Slot($section->key, $section->element->path);
        }
        $lookup = UserData::lookup($section->element, $reference->path);

        return $lookup->slot ?? $lookup;
    }

    private function open(Reference $reference): ?Repetition
    {
        return $reference->section === ''
            ? $this->sections[array_key_last($this->sections) ?? -1] ?? null
            : array_find($this->sections, static fn (Repetition $section): bool => $section->name === $reference->section);
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Check;

use TemplateCli\Language\Keyword;
use TemplateCli\Language\Node;
use TemplateCli\Language\Reference;
use TemplateCli\Language\ReferenceKind;
use TemplateCli\Language\Scan;
use TemplateCli\Language\Slot;
use TemplateCli\Language\SyntaxFault;
use TemplateCli\Language\UserData;

/** The faults that the engine meets with these data while it reads a template: all of it, hidden sections included. */
final class Analysis
{
    /** @var \SplObjectStorage<Scan, null> */
    private \SplObjectStorage $done;

    public function __construct(private readonly Slot $root, private readonly Problems $problems)
    {
        $this->done = new \SplObjectStorage();
    }

    public function of(Scan $scan): void
    {
        foreach ($scan->faults as $fault) {
            if (!$fault->dependsOnData) {
                $this->problems->addFault($fault->place, $fault->message, $fault->note);
            }
        }
        $this->file($scan);
    }

    private function file(Scan $scan): void
    {
        if (!$this->done->contains($scan)) {
            $this->done->attach($scan);
            foreach ($scan->hints as $hint) {
                // The engine takes it; the page is lost all the same.
                $rule = $hint->kind->isFault() ? Rule::from($hint->kind->value) : null;
                $rule === null ?: $this->problems->addFault($hint->place, $hint->message, rule: $rule);
            }
            $this->nodes($scan, null, []);
        }
    }

    /** @param list<string> $open names of the repeated sections of this file that are open */
    private function nodes(Scan $scan, ?Node $section, array $open): void
    {
        foreach ($scan->nodes($section) as $node) {
            try {
                match ($node->tag->keyword) {
                    Keyword::Variable => $this->variable($node),
                    Keyword::Dynamic, Keyword::Rdynamic => $this->section($scan, $node, $open),
                    Keyword::Optional, Keyword::NotOptional => $this->nodes($scan, $node, $open),
                    Keyword::Include => $this->include($node),
                    default => null,
                };
            } catch (SyntaxFault $fault) {
                $this->problems->addFault($node->place(), $fault->getMessage());
            }
        }
    }

    private function include(Node $node): void
    {
        if ($node->included !== null) {
            $this->file($node->included);
        } elseif ($node->file === '' && !$node->refused) {
            $this->problems->addFault($node->place(), 'Path must not be empty', "PHP throws this: the data name no file for {{$node->tag->content}}");
        }
    }

    private function variable(Node $node): void
    {
        foreach ($node->variable->references ?? [] as $text) {
            $reference = Reference::parse($text);
            $slot = $reference->kind === ReferenceKind::Root ? UserData::lookup($this->root, $reference->path)->slot : null;
            if ($slot !== null && Value::hasNoText($slot)) {
                // Also where the tag is hidden: the value is made a text before that is known.
                $this->problems->add($node, Rule::ObjectText, $slot->path, Value::name($slot) . ' has no text: template() throws');
            }
            if ($slot !== null || $reference->kind !== ReferenceKind::Root) {
                return;
            }
        }
    }

    /** @param list<string> $open */
    private function section(Scan $scan, Node $node, array $open): void
    {
        if ($node->name !== '' && in_array($node->name, $open, true)) {
            $message = "Dynamic block bad parameter '$node->text': namespace is used already";
            $this->problems->addFault($node->place(), $message);
        }
        $isKept = $node->reference !== null
            && ($node->reference->kind !== ReferenceKind::Root
                || Iterated::overTop($this->root, $node->reference->path)->slot !== null);
        $this->nodes($scan, $node, $isKept ? [...$open, $node->name] : $open);
    }
}

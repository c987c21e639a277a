<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/**
 * One way through one template text.
 *
 * It keeps the stack of open sections as the engine does when it is called without data, and goes on after a
 * fault where the engine stops. What data could change is marked: a section's name that is only kept when its array
 * is there, a reference that is only read when the ones before it have no value.
 */
final class Walk
{
    private readonly Scan $scan;
    private readonly Hinter $hinter;
    private readonly SectionStack $open;

    /**
     * @param list<string> $chain names of the files being analysed, this one last
     */
    public function __construct(
        private readonly Source $source,
        private readonly array $chain,
        private readonly Scanner $scanner,
        private readonly Slot $data,
    ) {
        $this->scan = new Scan($source);
        $this->hinter = new Hinter($this->scan);
        $this->open = new SectionStack($this->scan);
    }

    public function run(): Scan
    {
        $reader = new Reader($this->source->text);
        $braces = new Braces($this->source);
        $end = 0;
        while (($tag = $reader->next()) !== null) {
            $braces->text($end, $tag->start);
            $end = $tag->end;
            $this->hinter->tag($tag);
            try {
                $this->tag($tag);
            } catch (SyntaxFault $fault) {
                $this->fault($tag, $fault->getMessage());
            }
        }
        $braces->text($end, strlen($this->source->text));
        foreach ($braces->hints() as [$kind, $at, $message]) {
            $this->hinter->at($at, $kind, $message);
        }
        foreach ($this->open->all() as $section) {
            $this->scan->end($section->node);
            $this->fault($section->tag, 'Missing closing tag', "for {$section->quoted()}");
        }

        return $this->scan;
    }

    private function tag(Tag $tag): void
    {
        if ($tag->keyword->closes()) {
            $this->close($tag);

            return;
        }
        $node = $this->scan->addNode($tag);
        match ($tag->keyword) {
            Keyword::Include => $this->include($tag, $node),
            Keyword::Optional, Keyword::NotOptional => $this->optional($tag, $node),
            Keyword::Dynamic, Keyword::Rdynamic => $this->dynamic($tag, $node),
            Keyword::Variable => $this->variable($tag, $node),
            default => $node->reference = $this->reference($tag, $node->text = $tag->argument),
        };
        $node->refused = false;
    }

    private function variable(Tag $tag, Node $node): void
    {
        $node->variable = $variable = VariableTag::parse($tag->argument);
        $this->hinter->variable($tag, $variable);
        $atRendering = false;
        foreach ($variable->references as $number => $text) {
            try {
                // The first reference to a section puts the rest of the tag off until rendering.
                $atRendering = $this->reference($tag, $text)->kind !== ReferenceKind::Root || $atRendering;
            } catch (SyntaxFault $fault) {
                $needsData = $atRendering && !$this->open->isLive();
                $note = $atRendering ? 'when the references before it have no value' : '';
                $this->fault($tag, $fault->getMessage(), $note, $atRendering, $needsData, dependsOnData: $number > 0);

                return;
            }
        }
    }

    private function optional(Tag $tag, Node $node): void
    {
        $section = new OpenSection($tag, $node);
        [$text, $compare] = [$node->text, $node->compare] = explode(' ', $tag->argument, 2) + [1 => ''];
        $this->hinter->comparison($tag, $text, $compare);
        try {
            $node->reference = $reference = $this->reference($tag, $text);
            $section->live = $tag->keyword === Keyword::NotOptional
                && $reference->kind === ReferenceKind::Root
                && $this->open->isLive();
        } finally {
            $this->open->push($section);
        }
    }

    private function dynamic(Tag $tag, Node $node): void
    {
        $section = new OpenSection($tag, $node);
        [$name, $text] = [$node->name, $node->text] = str_contains($tag->argument, ',') ? explode(',', $tag->argument, 2) : ['', $tag->argument];
        $this->hinter->repeated($tag, $text);
        try {
            $this->checkName($tag, $name, $text);
            $section->name = $name;
            $node->reference = $reference = $this->reference($tag, $text);
            if ($reference->kind === ReferenceKind::SectionKey) {
                throw self::dynamicFault($text, '[*] is forbidden');
            }
            if ($reference->kind === ReferenceKind::Root && $text === '') {
                throw self::dynamicFault($text, 'no parameter found');
            }
            $section->nameIsKept = $reference->kind === ReferenceKind::SectionValue;
        } finally {
            $this->open->push($section);
        }
    }

    private function checkName(Tag $tag, string $name, string $text): void
    {
        if ($name === '' || !$this->open->knows($name)) {
            return;
        }
        $used = self::dynamicFault($text, 'namespace is used already');
        if ($this->open->keeps($name)) {
            throw $used;
        }
        $this->fault($tag, $used->getMessage(), 'when the data has the arrays of both sections', needsData: true, dependsOnData: true);
    }

    private static function dynamicFault(string $text, string $what): SyntaxFault
    {
        return new SyntaxFault("Dynamic block bad parameter '$text': $what");
    }

    private function include(Tag $tag, Node $node): void
    {
        $content = $node->text = $tag->argument;
        $fault = static fn (string $what): SyntaxFault => new SyntaxFault("Include block bad parameter$what");
        $reference = Reference::parse($content);
        if ($reference->kind !== ReferenceKind::Root) {
            throw $fault(" '$content': asterisk in filename is forbidden");
        }
        $node->reference = $reference;
        $named = UserData::lookup($this->data, $reference->path)->slot;
        $name = $named !== null && !$named->isReference && is_string($named->value)
            ? explode("\0", $named->value, 2)[0]
            : $content;
        $node->file = $name;
        if ($name === '' && $content === '') {
            throw $fault(': no parameter found');
        }
        if (in_array($name, $this->chain, true)) {
            $this->scan->circular = true;
            throw $fault(" '$content': circle is detected");
        }
        $node->included = $included = $this->scanner->scanFile($name, $this->chain);
        $file = new IncludedFile(Place::of($this->source, $tag), $name, $this->open->names());
        $this->scan->include($file, $included, $this->open->isLive());
        if ($included === null && Files::isOpaque($name)) {
            $this->scan->opaque[$name] = true;
        } elseif ($included === null) {
            $this->hinter->missingInclude($tag, $name);
        }
    }

    private function reference(Tag $tag, string $text): Reference
    {
        $reference = Reference::parse($text);
        if ($reference->kind !== ReferenceKind::Root) {
            ++$this->scan->sectionReferences;
            if (!$this->open->knows($reference->section)) {
                $this->hinter->unknownSection($tag, $text, $reference->section);
            }
        }
        $this->hinter->reference($tag, $text);

        return $reference;
    }

    private function close(Tag $tag): void
    {
        $innermost = $this->open->innermost();
        if ($innermost?->tag->keyword->closedBy() === $tag->keyword) {
            $this->open->pop();

            return;
        }
        $note = $innermost === null
            ? 'no section is open here'
            : "{$innermost->quoted()} of line {$this->source->position($innermost->tag->start)[0]} is still open here";
        $this->fault($tag, 'Unexpected closing ' . substr($tag->keyword->value, 1) . ' tag', $note);
        $this->open->closeOuter($tag->keyword);
    }

    private function fault(
        Tag $tag,
        string $message,
        string $note = '',
        bool $atRendering = false,
        bool $needsData = false,
        bool $dependsOnData = false,
    ): void {
        $this->scan->add(new Fault(
            Place::of($this->source, $tag),
            $message,
            $note,
            $atRendering,
            $needsData,
            $dependsOnData,
        ));
    }
}

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
     * @param array<mixed> $data
     */
    public function __construct(
        private readonly Source $source,
        private readonly array $chain,
        private readonly Scanner $scanner,
        private readonly array $data,
    ) {
        $this->scan = new Scan($source);
        $this->hinter = new Hinter($this->scan);
        $this->open = new SectionStack();
    }

    public function run(): Scan
    {
        $reader = new Reader($this->source->text);
        while (($tag = $reader->next()) !== null) {
            $this->hinter->tag($tag);
            try {
                $this->tag($tag);
            } catch (SyntaxFault $fault) {
                $this->fault($tag, $fault->getMessage());
            }
        }
        foreach ($this->open->all() as $section) {
            $this->fault($section->tag, 'Missing closing tag', "for {$section->quoted()}");
        }

        return $this->scan;
    }

    private function tag(Tag $tag): void
    {
        match ($tag->keyword) {
            Keyword::Include => $this->include($tag),
            Keyword::Optional, Keyword::NotOptional => $this->optional($tag),
            Keyword::Dynamic, Keyword::Rdynamic => $this->dynamic($tag),
            Keyword::OptionalEnd, Keyword::DynamicEnd, Keyword::RdynamicEnd => $this->close($tag),
            Keyword::Variable => $this->variable($tag),
            default => $this->reference($tag, $tag->argument),
        };
    }

    private function variable(Tag $tag): void
    {
        $variable = VariableTag::parse($tag->argument);
        $this->hinter->variable($tag, $variable);
        $atRendering = false;
        foreach ($variable->references as $text) {
            try {
                // The first reference to a section puts the rest of the tag off until rendering.
                $atRendering = $this->reference($tag, $text)->kind !== ReferenceKind::Root || $atRendering;
            } catch (SyntaxFault $fault) {
                $needsData = $atRendering && !$this->open->isLive();
                $note = $atRendering ? 'when the references before it have no value' : '';
                $this->fault($tag, $fault->getMessage(), $note, $atRendering, $needsData);

                return;
            }
        }
    }

    private function optional(Tag $tag): void
    {
        $section = new OpenSection($tag);
        [$text, $compare] = explode(' ', $tag->argument, 2) + [1 => ''];
        $this->hinter->comparison($tag, $compare);
        try {
            $reference = $this->reference($tag, $text);
            $section->live = $tag->keyword === Keyword::NotOptional
                && $reference->kind === ReferenceKind::Root
                && $this->open->isLive();
        } finally {
            $this->open->push($section);
        }
    }

    private function dynamic(Tag $tag): void
    {
        $section = new OpenSection($tag);
        [$name, $text] = str_contains($tag->argument, ',') ? explode(',', $tag->argument, 2) : ['', $tag->argument];
        $this->hinter->repeated($tag, $text);
        try {
            $this->checkName($tag, $name, $text);
            $section->name = $name;
            $reference = $this->reference($tag, $text);
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
        $this->fault($tag, $used->getMessage(), 'when the data has the arrays of both sections', needsData: true);
    }

    private static function dynamicFault(string $text, string $what): SyntaxFault
    {
        return new SyntaxFault("Dynamic block bad parameter '$text': $what");
    }

    private function include(Tag $tag): void
    {
        $content = $tag->argument;
        $fault = static fn (string $what): SyntaxFault => new SyntaxFault("Include block bad parameter$what");
        $reference = Reference::parse($content);
        if ($reference->kind !== ReferenceKind::Root) {
            throw $fault(" '$content': asterisk in filename is forbidden");
        }
        $name = UserData::find($this->data, $reference->path);
        $name = is_string($name) ? explode("\0", $name, 2)[0] : $content;
        if ($name === '' && $content === '') {
            throw $fault(': no parameter found');
        }
        if (in_array($name, $this->chain, true)) {
            $this->scan->circular = true;
            throw $fault(" '$content': circle is detected");
        }
        $included = $this->scanner->scanFile($name, $this->chain);
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
    ): void {
        $this->scan->add(new Fault(Place::of($this->source, $tag), $message, $note, $atRendering, $needsData));
    }
}

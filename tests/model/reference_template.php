<?php
/**
 * A second template engine, small and slow, that the extension is compared with.
 *
 * It reads tags and references as the command line does, in PHP, and shares no code and no structure
 * with the extension: it keeps nothing to fold, and resolves every reference when it is needed. What
 * both must agree on is everything that a caller can see: the text, the warnings and their order, the
 * exceptions.
 */

declare(strict_types=1);

use TemplateCli\Language\Keyword;
use TemplateCli\Language\Reader;
use TemplateCli\Language\Reference;
use TemplateCli\Language\ReferenceKind;
use TemplateCli\Language\SyntaxFault;
use TemplateCli\Language\VariableTag;

require __DIR__ . '/../../cli/autoload.php';

final class TemplateFailure extends Exception
{
}

/** A value as it is stored in an array: PHP code cannot tell a reference from its value, paths can. */
final class Slot
{
    public function __construct(public readonly mixed $value, public readonly bool $isReference = false)
    {
    }

    public static function of(array $array, int|string $key): ?self
    {
        if (!array_key_exists($key, $array)) {
            return null;
        }
        return new self($array[$key], ReflectionReference::fromArrayElement($array, $key) !== null);
    }

    public function isPlainArray(): bool
    {
        return !$this->isReference && is_array($this->value);
    }

    /** The text of the value, as far as its first NUL byte. */
    public function text(): string
    {
        return upToNul((string) $this->value);
    }
}

function upToNul(string $bytes): string
{
    return explode("\0", $bytes, 2)[0];
}

function escaped(Keyword $how, string $text, ?string $charset): string
{
    return upToNul(match ($how) {
        Keyword::Addslashes => addslashes($text),
        Keyword::Htmlentities => htmlentities($text, ENT_COMPAT | ENT_HTML401, $charset),
        Keyword::Htmlspecialchars => htmlspecialchars($text, ENT_COMPAT | ENT_HTML401, $charset),
        Keyword::Rawurlencode => rawurlencode($text),
    });
}

/**
 * Booleans carry the integer that they were made from: the generator of random data makes them from
 * 0 and 1 only, so that the integer is known here.
 */
function isShown(?Slot $slot, string $compare): bool
{
    if ($slot === null) {
        return false;
    }
    if ($compare === '') {
        return $slot->isPlainArray() && array_key_exists('visible', $slot->value)
            ? (bool) $slot->value['visible']
            : (bool) $slot->value;
    }
    if (preg_match("/'(.*)'/s", $compare, $quoted)) {
        $compare = $quoted[1];
    }
    if ($slot->isReference) {
        return false;
    }
    return match (true) {
        is_string($slot->value) => upToNul($slot->value) === $compare,
        is_int($slot->value) => $slot->value === leadingInteger($compare),
        is_bool($slot->value) => $compare === '0' ? !$slot->value : $slot->value,
        default => false,
    };
}

function leadingInteger(string $text): int
{
    preg_match('/^-?[0-9]*/', $text, $digits);
    $value = filter_var(preg_replace('/^(-?)0+(?=[0-9])/', '$1', $digits[0]), FILTER_VALIDATE_INT);
    return $value === false ? 0 : $value;
}

/** One repeated section while it is rendered. */
final class OpenSection
{
    public string $key = '';
    public ?Slot $element = null;

    public function __construct(public readonly string $name)
    {
    }
}

/** The repeated sections that are open, outermost first: one list for a template and what it includes. */
final class OpenSections
{
    /** @var list<OpenSection> */
    public array $all = [];

    /** The section that a reference starts from: null when there is none. */
    public function start(string $name, ?Slot $current): ?OpenSection
    {
        if ($current === null) {
            return null;
        }
        return $name === '' ? array_last_of($this->all) : array_find($this->all, fn ($section) => $section->name === $name);
    }
}

function array_last_of(array $list): mixed
{
    return $list[array_key_last($list)];
}

/**
 * One file or text. It is read into parts: texts, and functions that are called while rendering with
 * the current element and return their text.
 */
final class ReferenceTemplate
{
    private int $at = 0;
    private Reader $reader;
    private Slot $root;
    /** @var list<string> names of the sections that are open while this is read */
    private array $open = [];

    /** @param list<string> $chain the files being read, this one last */
    private function __construct(
        private string $source,
        private array $data,
        private array $chain,
        private OpenSections $sections,
    ) {
        $this->reader = new Reader($source);
        $this->root = new Slot($data);
    }

    /** @return string|TemplateFailure the text, or the failure whose message is the warning */
    public static function outcome(string $name, array $data, bool $isText): string|TemplateFailure
    {
        try {
            $template = new self($isText ? $name : self::load($name), $data, [$name], new OpenSections());
            return self::rendered($template->parts(), null);
        } catch (SyntaxFault $fault) {
            return new TemplateFailure("{$fault->getMessage()} in $name");
        } catch (TemplateFailure $failure) {
            return $failure;
        }
    }

    private static function load(string $name): string
    {
        // That no name can be empty is for PHP to say.
        return $name === '' || is_file($name) ? file_get_contents($name) : throw new TemplateFailure("Could not open file $name");
    }

    /** @param list<string|Closure> $parts */
    private static function rendered(array $parts, ?Slot $current): string
    {
        return implode(array_map(fn ($part) => is_string($part) ? $part : $part($current), $parts));
    }

    /** @return list<string|Closure> */
    private function parts(): array
    {
        try {
            return $this->body(null);
        } catch (SyntaxFault $fault) {
            throw new TemplateFailure("{$fault->getMessage()} in " . array_last_of($this->chain));
        }
    }

    /**
     * Reads up to the end of the source or to the closing tag that is expected.
     * @return list<string|Closure>
     */
    private function body(?Keyword $closing): array
    {
        $parts = [];
        while (($tag = $this->reader->next()) !== null) {
            $parts[] = $this->literal($tag->start);
            $this->at = $tag->end;
            if (str_starts_with($tag->keyword->value, '/')) {
                return $tag->keyword === $closing ? $parts
                    : throw new SyntaxFault('Unexpected closing ' . substr($tag->keyword->value, 1) . ' tag');
            }
            array_push($parts, ...match ($tag->keyword) {
                Keyword::Variable => [$this->variable($tag->argument)],
                Keyword::Include => $this->include($tag->argument),
                Keyword::Optional, Keyword::NotOptional => $this->optional($tag->argument, $tag->keyword),
                Keyword::Dynamic, Keyword::Rdynamic => [$this->section($tag->argument, $tag->keyword)],
                default => [$this->escaping($tag->keyword, $tag->argument)],
            });
        }
        $parts[] = $this->literal(strlen($this->source));
        return $closing === null ? $parts : throw new SyntaxFault('Missing closing tag');
    }

    private function literal(int $end): string
    {
        return preg_replace('/\{(\{)|\}(\})/', '$1$2', substr($this->source, $this->at, $end - $this->at));
    }

    private function variable(string $content): Closure|string
    {
        $tag = VariableTag::parse($content);
        foreach ($tag->references as $text) {
            $reference = Reference::parse($text);
            if ($reference->kind !== ReferenceKind::Root) {
                return fn (?Slot $current) => $this->firstText($tag, $current);
            }
            $found = $this->walk($reference->path, null);
            if ($found !== null) {
                return $found->text();
            }
        }
        return $tag->default ?? '{' . $content . '}';
    }

    private function firstText(VariableTag $tag, ?Slot $current): string
    {
        foreach ($tag->references as $reference) {
            $text = $this->text(Reference::parse($reference), $current);
            if ($text !== null) {
                return $text;
            }
        }
        return $tag->default ?? '';
    }

    private function text(Reference $reference, ?Slot $current): ?string
    {
        if ($reference->kind === ReferenceKind::Root) {
            return $this->walk($reference->path, null)?->text();
        }
        $section = $this->sections->start($reference->section, $current);
        if ($section === null || $reference->kind === ReferenceKind::SectionKey) {
            return $section === null ? null : upToNul($section->key);
        }
        return $this->walk($reference->path, $section->element)?->text();
    }

    private function escaping(Keyword $how, string $argument): Closure|string
    {
        $reference = Reference::parse($argument);
        if ($reference->kind !== ReferenceKind::Root) {
            return fn (?Slot $current) => escaped($how, $this->text($reference, $current) ?? '', 'ISO-8859-1');
        }
        $found = $this->walk($reference->path, null);
        return $found !== null && !$found->isReference && is_string($found->value) ? escaped($how, $found->value, null) : '';
    }

    /** @return list<string|Closure> */
    private function optional(string $argument, Keyword $keyword): array
    {
        [$name, $compare] = explode(' ', $argument, 2) + [1 => ''];
        $negated = $keyword === Keyword::NotOptional;
        $reference = Reference::parse($name);
        if ($reference->kind === ReferenceKind::Root) {
            $shown = isShown($this->walk($reference->path, null), $compare) !== $negated;
            $body = $this->body($keyword->closedBy());
            return $shown ? $body : [];
        }
        $body = $this->body($keyword->closedBy());
        return [function (?Slot $current) use ($reference, $compare, $negated, $body): string {
            $section = $this->sections->start($reference->section, $current);
            if ($section === null) {
                return '';
            }
            $shown = $reference->kind === ReferenceKind::SectionKey
                ? $section->key === $compare
                : isShown($this->walk($reference->path, $section->element), $compare);
            return $shown !== $negated ? self::rendered($body, $current) : '';
        }];
    }

    private function section(string $argument, Keyword $keyword): Closure|string
    {
        [$name, $text] = str_contains($argument, ',') ? explode(',', $argument, 2) : ['', $argument];
        $fault = fn (string $what) => new SyntaxFault("Dynamic block bad parameter '$text': $what");
        if ($name !== '' && in_array($name, $this->open, true)) {
            throw $fault('namespace is used already');
        }
        $reference = Reference::parse($text);
        if ($reference->kind === ReferenceKind::SectionKey) {
            throw $fault('[*] is forbidden');
        }
        $fixed = null;
        if ($reference->kind === ReferenceKind::Root) {
            $found = $this->walk($reference->path, null);
            $fixed = $this->numberedOf($found) ?? $found;
            if (!is_array($fixed?->value)) {
                // Nothing to repeat: the body is read for its errors, under no name.
                $text !== '' ? $this->sectionBody('', $keyword) : throw $fault('no parameter found');
                return '';
            }
        }
        $body = $this->sectionBody($name, $keyword);
        return fn (?Slot $current) => $this->repeated($name, $fixed ?? $this->elements($reference, $current), $keyword, $body);
    }

    private function sectionBody(string $name, Keyword $keyword): array
    {
        $this->open[] = $name;
        $body = $this->body($keyword->closedBy());
        array_pop($this->open);
        return $body;
    }

    private function elements(Reference $reference, ?Slot $current): ?Slot
    {
        $section = $this->sections->start($reference->section, $current);
        $found = $section === null ? null : $this->walk($reference->path, $section->element);
        if ($found === null || !$found->isPlainArray()) {
            return null;
        }
        $found = $this->numberedOf($found) ?? $found;
        return !$found->isReference && (is_array($found->value) || is_object($found->value)) ? $found : null;
    }

    private function numberedOf(?Slot $found): ?Slot
    {
        return $found?->isPlainArray() ? Slot::of($found->value, 'num') : null;
    }

    private function repeated(string $name, ?Slot $iterated, Keyword $keyword, array $body): string
    {
        if ($iterated === null) {
            return '';
        }
        $this->sections->all[] = $section = new OpenSection($name);
        $out = '';
        $elements = is_object($iterated->value) ? get_mangled_object_vars($iterated->value) : $iterated->value;
        $keys = array_keys($elements);
        foreach ($keyword === Keyword::Rdynamic ? array_reverse($keys) : $keys as $key) {
            $section->key = is_int($key) ? sprintf('%u', $key) : $key;
            $section->element = Slot::of($elements, $key);
            $out .= self::rendered($body, $section->element);
        }
        array_pop($this->sections->all);
        return $out;
    }

    /** @return list<string|Closure> */
    private function include(string $content): array
    {
        $reference = Reference::parse($content);
        if ($reference->kind !== ReferenceKind::Root) {
            throw new SyntaxFault("Include block bad parameter '$content': asterisk in filename is forbidden");
        }
        $found = $this->walk($reference->path, null);
        $isGiven = $found !== null && !$found->isReference && is_string($found->value);
        if (!$isGiven && $content === '') {
            throw new SyntaxFault('Include block bad parameter: no parameter found');
        }
        $name = $isGiven ? upToNul($found->value) : $content;
        if (in_array($name, $this->chain, true)) {
            throw new SyntaxFault("Include block bad parameter '$content': circle is detected");
        }
        try {
            $source = self::load($name);
        } catch (TemplateFailure) {
            return [];
        }
        return (new self($source, $this->data, [...$this->chain, $name], $this->sections))->parts();
    }

    /** @param list<string> $path */
    private function walk(array $path, ?Slot $from): ?Slot
    {
        foreach ($path as $step => $key) {
            if ($step > 0 && !$from->isPlainArray()) {
                return null;
            }
            $from = $this->step($key, $from);
            if ($from === null) {
                return null;
            }
        }
        return $from;
    }

    private function step(string $key, ?Slot $from): ?Slot
    {
        // What PHP itself stores as an integer: an index if it is not negative, else never found.
        $stored = array_key_first([$key => 0]);
        if (is_int($stored)) {
            // Properties have names, never numbers: an index finds nothing in an object.
            return $stored >= 0 && $from?->isPlainArray() ? Slot::of($from->value, $stored) : null;
        }
        $from ??= $this->root;
        return $from->isPlainArray() ? Slot::of($from->value, $key) : null;
    }
}

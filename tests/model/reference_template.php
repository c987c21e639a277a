<?php
/**
 * A second template engine, small and slow, that the extension is compared with.
 *
 * It shares no code and no structure with the extension: it holds the whole source in one string,
 * keeps nothing to fold, and resolves every reference when it is needed. What both must agree on is
 * everything that a caller can see: the text, the warnings and their order, the exceptions.
 */

declare(strict_types=1);

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

/** The key that an index step looks up, or null when the step is no canonical unsigned number. */
function indexOf(string $step): ?int
{
    if (!preg_match('/^(0|[1-9][0-9]{0,19})$/D', $step)) {
        return null;
    }
    [$high, $low] = [0, 0];
    foreach (str_split($step) as $digit) {
        $low = $low * 10 + (int) $digit;
        $high = $high * 10 + ($low >> 32);
        $low &= 0xFFFFFFFF;
    }
    return $high > 0xFFFFFFFF ? null : ($high << 32) | $low;
}

/** What PHP's message formatter makes of a message that comes without arguments. */
function formatted(string $message): string
{
    $out = '';
    for ($rest = upToNul($message); $rest !== '';) {
        if ($rest[0] !== '%') {
            $run = strcspn($rest, '%');
            $out .= substr($rest, 0, $run);
            $rest = substr($rest, $run);
            continue;
        }
        preg_match('/^%(?:(?![a-z])[-+# 0]*(\d+|\*)?(?:\.(\d+|\*)?)?)?(?:ll|hh|[Llhzjt])?(.?)/s', $rest, $match);
        [$all, $width, $precision, $conversion] = $match;
        if ($width === '*' || $precision === '*' || ($conversion !== '' && strpbrk($conversion, 'diouxXsSZcfFeEgGkHpn'))) {
            $out .= '%';
            $rest = substr($rest, 1);
            continue;
        }
        if ($conversion !== '') {
            $adjust = str_contains(strstr($all, $width === '' ? $conversion : $width, true), '-') ? STR_PAD_RIGHT : STR_PAD_LEFT;
            $out .= str_pad($conversion === '%' ? '%' : '%' . $conversion, (int) $width, ' ', $adjust);
        }
        $rest = substr($rest, strlen($all));
    }
    return $out;
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

/** One part of a template: called while rendering with the current element, it returns its text. */
interface Part
{
    public function render(Rendering $rendering, ?Slot $current): string;
}

final class Rendering
{
    /** @var list<OpenSection> outermost first */
    public array $sections = [];

    public function __construct(public readonly ReferenceTemplate $template)
    {
    }

    /** @param list<Part|string> $parts */
    public function all(array $parts, ?Slot $current): string
    {
        $out = '';
        foreach ($parts as $part) {
            $out .= is_string($part) ? $part : $part->render($this, $current);
        }
        return $out;
    }

    /** The section that a reference starts from, and the element there: null when there is none. */
    public function start(string $name, ?Slot $current): ?OpenSection
    {
        if ($current === null) {
            return null;
        }
        if ($name === '') {
            return $this->sections[array_key_last($this->sections)];
        }
        foreach ($this->sections as $section) {
            if ($section->name === $name) {
                return $section;
            }
        }
        return null;
    }

    public function text(Reference $reference, ?Slot $current): ?string
    {
        $section = $this->start($reference->section, $current);
        if ($section === null) {
            return null;
        }
        if ($reference->isKey) {
            return upToNul($section->key);
        }
        return $this->template->walk($reference->path, $section->element)?->text();
    }
}

final class Reference
{
    public function __construct(
        /** @var list<string> */
        public readonly array $path,
        public readonly string $section,
        public readonly bool $isRelative,
        public readonly bool $isKey,
    ) {
    }
}

final class VariablePart implements Part
{
    public function __construct(private array $references, private ?string $default)
    {
    }

    public function render(Rendering $rendering, ?Slot $current): string
    {
        foreach ($this->references as $text) {
            $reference = $rendering->template->reference($text);
            $found = $reference->isRelative
                ? $rendering->text($reference, $current)
                : $rendering->template->walk($reference->path, null)?->text();
            if ($found !== null) {
                return $found;
            }
        }
        return $this->default ?? '';
    }
}

final class EscapedPart implements Part
{
    public function __construct(private string $how, private Reference $reference)
    {
    }

    public function render(Rendering $rendering, ?Slot $current): string
    {
        $text = $rendering->text($this->reference, $current);
        return $text === null ? '' : escaped($this->how, $text, 'ISO-8859-1');
    }
}

function escaped(string $how, string $text, ?string $charset): string
{
    return upToNul(match ($how) {
        'addslashes' => addslashes($text),
        'htmlentities' => htmlentities($text, ENT_COMPAT | ENT_HTML401, $charset),
        'htmlspecialchars' => htmlspecialchars($text, ENT_COMPAT | ENT_HTML401, $charset),
        'rawurlencode' => rawurlencode($text),
    });
}

final class OptionalPart implements Part
{
    public function __construct(
        private Reference $reference,
        private string $compare,
        private bool $negated,
        private array $body,
    ) {
    }

    public function render(Rendering $rendering, ?Slot $current): string
    {
        $section = $rendering->start($this->reference->section, $current);
        if ($section === null) {
            return '';
        }
        $shown = $this->reference->isKey
            ? $section->key === $this->compare
            : isShown($rendering->template->walk($this->reference->path, $section->element), $this->compare);
        return $shown !== $this->negated ? $rendering->all($this->body, $current) : '';
    }
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

final class SectionPart implements Part
{
    /** @param ?Slot $fixed what is known already; null: resolve the reference for each element */
    public function __construct(
        private string $name,
        private ?Slot $fixed,
        private ?Reference $reference,
        private bool $reversed,
        private array $body,
    ) {
    }

    public function render(Rendering $rendering, ?Slot $current): string
    {
        $iterated = $this->fixed ?? $this->find($rendering, $current);
        if ($iterated === null) {
            return '';
        }
        $section = new OpenSection($this->name);
        $rendering->sections[] = $section;
        $out = '';
        $elements = is_object($iterated->value) ? get_mangled_object_vars($iterated->value) : $iterated->value;
        $keys = array_keys($elements);
        foreach ($this->reversed ? array_reverse($keys) : $keys as $key) {
            $section->key = is_int($key) ? sprintf('%u', $key) : $key;
            $section->element = Slot::of($elements, $key);
            $out .= $rendering->all($this->body, $section->element);
        }
        array_pop($rendering->sections);
        return $out;
    }

    private function find(Rendering $rendering, ?Slot $current): ?Slot
    {
        $section = $rendering->start($this->reference->section, $current);
        $found = $section === null ? null : $rendering->template->walk($this->reference->path, $section->element);
        if ($found === null || !$found->isPlainArray()) {
            return null;
        }
        $found = Slot::of($found->value, 'num') ?? $found;
        return !$found->isReference && (is_array($found->value) || is_object($found->value)) ? $found : null;
    }
}

final class ReferenceTemplate
{
    private const KEYWORDS = [
        'include', 'optional', '!optional', '/optional', 'dynamic', 'rdynamic', '/dynamic', '/rdynamic',
        'addslashes', 'htmlentities', 'htmlspecialchars', 'rawurlencode',
    ];
    private const BLANKS = " \t\r\n\f\v";

    private int $at = 0;
    private Slot $root;
    /** @var list<string> names of the named sections that are open in this file */
    private array $open = [];

    /** @param list<string> $chain the files being read, this one last */
    private function __construct(private string $source, private array $data, private array $chain)
    {
        $this->root = new Slot($data);
    }

    /** @return string|TemplateFailure the text, or the failure whose message is the warning */
    public static function outcome(string $name, array $data, bool $isText): string|TemplateFailure
    {
        try {
            $template = new self($isText ? $name : self::load($name), $data, [$name]);
            return (new Rendering($template))->all($template->body(null), null);
        } catch (TemplateFailure $failure) {
            return $failure;
        }
    }

    private static function load(string $name): string
    {
        set_error_handler(fn () => true);
        try {
            $source = str_contains($name, "\0") ? false : file_get_contents($name, true);
        } finally {
            restore_error_handler();
        }
        return $source === false ? throw new TemplateFailure("Could not open file $name") : $source;
    }

    private function fail(string $message): never
    {
        throw new TemplateFailure("$message in " . $this->chain[array_key_last($this->chain)]);
    }

    /**
     * Reads up to the end of the source or to the closing tag that is expected.
     * @return list<Part|string>
     */
    private function body(?string $closing): array
    {
        $parts = [];
        while (true) {
            $parts[] = $this->literal($tagFollows);
            if (!$tagFollows) {
                break;
            }
            [$keyword, $argument] = $this->keyword($this->tag());
            if ($keyword !== null && $keyword[0] === '/') {
                return $keyword === $closing ? $parts : $this->fail('Unexpected closing ' . substr($keyword, 1) . ' tag');
            }
            array_push($parts, ...match ($keyword) {
                null => [$this->variable($argument)],
                'include' => $this->include($argument),
                'optional', '!optional' => $this->optional($argument, $keyword === '!optional'),
                'dynamic', 'rdynamic' => [$this->section($argument, $keyword === 'rdynamic')],
                default => [$this->escaping($keyword, $argument)],
            });
        }
        return $closing === null ? $parts : $this->fail('Missing closing tag');
    }

    private function literal(?bool &$tagFollows): string
    {
        $tagFollows = false;
        for ($out = ''; $this->at < strlen($this->source);) {
            $run = strcspn($this->source, '{}', $this->at);
            $out .= substr($this->source, $this->at, $run);
            $this->at += $run;
            $pair = substr($this->source, $this->at, 2);
            if ($pair === '{{' || $pair === '}}') {
                $this->at += 2;
            } elseif ($pair === '') {
                break;
            } elseif ($pair[0] === '{' && isset($pair[1]) && !str_contains(" \t\n\r", $pair[1])) {
                $this->at += 1;
                $tagFollows = true;
                break;
            } else {
                $this->at += 1;
            }
            $out .= $pair[0];
        }
        return $out;
    }

    private function tag(): string
    {
        $run = strcspn($this->source, '{}', $this->at);
        $content = substr($this->source, $this->at, $run);
        $this->at += $run + 1;
        if (($this->source[$this->at - 1] ?? '}') === '}') {
            return $content;
        }
        // An inner "{" turns all that follows, and itself, into braces.
        $braces = strlen($this->source) - $this->at + 1;
        $this->at = strlen($this->source);
        return $content . str_repeat('{', $braces);
    }

    /** @return array{?string, string} */
    private function keyword(string $tag): array
    {
        foreach (self::KEYWORDS as $keyword) {
            if (str_starts_with($tag, $keyword)) {
                return [$keyword, $this->trimmed(substr($tag, strlen($keyword)))];
            }
        }
        return [null, $this->trimmed($tag)];
    }

    /** Blanks alone stay as they are. */
    private function trimmed(string $text): string
    {
        $trimmed = trim($text, self::BLANKS);
        return $trimmed === '' ? $text : $trimmed;
    }

    private function variable(string $content): Part|string
    {
        $references = [];
        $default = null;
        for ($at = 0; ($at += strspn($content, self::BLANKS, $at)) < strlen($content);) {
            if ($content[$at] === "'") {
                if ($at === strlen($content) - 1 || $content[-1] !== "'") {
                    $this->fail("Variable block bad parameter '$content': could not find second ' as the last character");
                }
                $default = substr($content, $at + 1, -1);
                break;
            }
            $length = strcspn($content, self::BLANKS . "'", $at);
            if (($content[$at + $length] ?? '') === "'") {
                $this->fail("Variable block bad parameter '$content': ' is forbidden in variable");
            }
            $references[] = substr($content, $at, $length);
            $at += $length;
        }
        foreach ($references as $text) {
            $reference = $this->reference($text);
            if ($reference->isRelative) {
                return new VariablePart($references, $default);
            }
            $found = $this->walk($reference->path, null);
            if ($found !== null) {
                return $found->text();
            }
        }
        return $default ?? '{' . $content . '}';
    }

    private function escaping(string $how, string $argument): Part|string
    {
        $reference = $this->reference($argument);
        if ($reference->isRelative) {
            return new EscapedPart($how, $reference);
        }
        $found = $this->walk($reference->path, null);
        return $found !== null && !$found->isReference && is_string($found->value)
            ? escaped($how, $found->value, null)
            : '';
    }

    /** @return list<Part|string> */
    private function optional(string $argument, bool $negated): array
    {
        [$name, $compare] = explode(' ', $argument, 2) + [1 => ''];
        $reference = $this->reference($name);
        if ($reference->isRelative) {
            return [new OptionalPart($reference, $compare, $negated, $this->body('/optional'))];
        }
        $shown = isShown($this->walk($reference->path, null), $compare) !== $negated;
        $body = $this->body('/optional');
        return $shown ? $body : [];
    }

    private function section(string $argument, bool $reversed): Part|string
    {
        [$name, $text] = str_contains($argument, ',') ? explode(',', $argument, 2) : ['', $argument];
        if ($name !== '' && in_array($name, $this->open, true)) {
            $this->fail("Dynamic block bad parameter '$text': namespace is used already");
        }
        $reference = $this->reference($text);
        if ($reference->isKey) {
            $this->fail("Dynamic block bad parameter '$text': [*] is forbidden");
        }
        $fixed = null;
        if (!$reference->isRelative) {
            $fixed = $this->walk($reference->path, null);
            if ($fixed !== null && $fixed->isPlainArray()) {
                $fixed = Slot::of($fixed->value, 'num') ?? $fixed;
            }
            if ($fixed === null || !is_array($fixed->value)) {
                if ($text === '') {
                    $this->fail("Dynamic block bad parameter '': no parameter found");
                }
                // Nothing to repeat: the body is read for its errors, under no name.
                $this->sectionBody('', $reversed);
                return '';
            }
        }
        return new SectionPart($name, $fixed, $reference, $reversed, $this->sectionBody($name, $reversed));
    }

    private function sectionBody(string $name, bool $reversed): array
    {
        $this->open[] = $name;
        $body = $this->body($reversed ? '/rdynamic' : '/dynamic');
        array_pop($this->open);
        return $body;
    }

    /** @return list<Part|string> */
    private function include(string $content): array
    {
        $reference = $this->reference($content);
        if ($reference->isRelative) {
            $this->fail("Include block bad parameter '$content': asterisk in filename is forbidden");
        }
        $found = $this->walk($reference->path, null);
        $isGiven = $found !== null && !$found->isReference && is_string($found->value);
        if (!$isGiven && $content === '') {
            $this->fail('Include block bad parameter: no parameter found');
        }
        $name = $isGiven ? upToNul($found->value) : $content;
        if (in_array($name, $this->chain, true)) {
            $this->fail("Include block bad parameter '$content': circle is detected");
        }
        try {
            $source = self::load($name);
        } catch (TemplateFailure) {
            return [];
        }
        return (new self($source, $this->data, [...$this->chain, $name]))->body(null);
    }

    /** Reads the notation from its right end, since what stands left of a star is no key. */
    public function reference(string $argument): Reference
    {
        $path = [];
        $section = null;
        $star = null;
        $rest = $argument;
        // Parts shorter than the whole are cut off as long as a separator is left; the "::" may share
        // its second colon with the separator to its right, which makes an empty part.
        $limit = strlen($argument) - 2;
        while ($limit >= 0 && ($at = strrpos(substr($argument, 0, $limit + 2), '::')) !== false) {
            $part = substr($rest, $at + 2);
            if ($part === '') {
                $this->fail("Bad formated parameter'$argument': too many :");
            }
            if ($part === '*' || $part === '[*]') {
                if ($star !== null) {
                    $this->fail("Bad formated parameter'$argument': too many *");
                }
                if ($part === '[*]' && $path !== []) {
                    $this->fail('Bad formated parameter: [*] must be last');
                }
                $star = $part;
            } elseif ($section !== null) {
                $this->fail("Bad formated parameter'$argument': too many namespaces");
            } elseif ($star !== null) {
                $section = $part;
            } else {
                array_unshift($path, $part);
            }
            if ($at === 0) {
                $this->fail("Bad formated parameter'$argument': too many :");
            }
            $rest = substr($argument, 0, $at);
            $limit = min(strlen($argument) - 2, $at - 1);
        }
        if (in_array($rest, ['*', '.*', '[*]'], true)) {
            if ($star !== null) {
                $this->fail('Bad formated parameter: too many *');
            }
            if ($rest === '[*]' && $path !== []) {
                $this->fail('Bad formated parameter: [*] must be last');
            }
            return new Reference($path, '', true, $rest === '[*]');
        }
        if ($section !== null) {
            $this->fail('Bad formated parameter: too many namespaces');
        }
        if ($star !== null) {
            return new Reference($path, $rest, true, $star === '[*]');
        }
        return new Reference([$rest, ...$path], '', false, false);
    }

    /** @param list<string> $path */
    public function walk(array $path, ?Slot $from): ?Slot
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
        $index = indexOf($key);
        if ($index !== null) {
            // Properties have names, never numbers: an index finds nothing in an object.
            return $from?->isPlainArray() ? Slot::of($from->value, $index) : null;
        }
        $from ??= $this->root;
        // A key that PHP itself stores as an integer is not found by its text ("-1").
        return $from->isPlainArray() && is_string(array_key_first([$key => 0])) ? Slot::of($from->value, $key) : null;
    }
}

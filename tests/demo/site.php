<?php
declare(strict_types=1);

/** A site that was rendered, read back. */
final class Site
{
    /** @var array<string, Dom\HTMLDocument> by file name */
    public array $pages = [];
    /** @var array<string, string> by file name */
    public array $mails = [];

    public function __construct(public readonly string $folder)
    {
        foreach (glob("$folder/{,sections/,how/}*.html", GLOB_BRACE) as $file) {
            $this->pages[substr($file, strlen($folder) + 1)] = Dom\HTMLDocument::createFromFile($file, LIBXML_NOERROR);
        }
        foreach (glob("$folder/mails/*.txt") as $file) {
            $this->mails[basename($file)] = file_get_contents($file);
        }
    }

    /** What a validator has to say about the pages. */
    public function invalid(): iterable
    {
        foreach (array_keys($this->pages) as $name) {
            [, , $complaints] = run(['tidy', '-errors', '-quiet', '-utf8', '--drop-empty-elements', 'no', "$this->folder/$name"]);
            // This one attribute is too new for it.
            foreach (preg_grep('/attribute "aria-current"/', array_filter(explode("\n", $complaints)), PREG_GREP_INVERT) as $complaint) {
                yield "$name: $complaint";
            }
        }
    }

    /** Elements and attributes that no template writes. */
    public function foreign(): iterable
    {
        $elements = 'HTML HEAD META TITLE LINK BODY A HEADER NAV MAIN FOOTER SECTION DIV ARTICLE H1 H2 H3 P PRE CODE B I '
            . 'SPAN UL OL LI DL DT DD DETAILS SUMMARY TABLE THEAD TBODY TR TH TD';
        $attributes = 'lang charset name content rel href class id style scope open data-kib data-count '
            . 'aria-label aria-labelledby aria-current aria-hidden';
        [$elements, $attributes] = [explode(' ', $elements), explode(' ', $attributes)];
        foreach ($this->pages as $name => $page) {
            foreach ($page->querySelectorAll('*') as $element) {
                foreach (array_diff([$element->tagName], $elements) as $tag) {
                    yield "$name: element $tag";
                }
                foreach (array_diff($element->getAttributeNames(), $attributes) as $attribute) {
                    yield "$name: attribute $attribute of $element->tagName";
                }
            }
        }
    }

    /** Links that lead nowhere, or out of the web. */
    public function brokenLinks(): iterable
    {
        foreach ($this->pages as $name => $page) {
            foreach ($page->querySelectorAll('[href]') as $link) {
                $href = $link->getAttribute('href');
                if (preg_match('~^(?:https?://|mailto:[^@]+@[^@]+$)~', $href)) {
                    continue;
                }
                [$file, $fragment] = array_map(rawurldecode(...), explode('#', $href) + [1 => '']);
                $file = $file === '' ? $name : (dirname($name) === '.' ? $file : dirname($name) . "/$file");
                $file = preg_replace('~^[a-z]+/\.\./~', '', $file);
                if (!is_file("$this->folder/$file")) {
                    yield "$name: no file for $href";
                } elseif ($fragment !== '' && !$this->pages[$file]->getElementById($fragment)) {
                    yield "$name: nothing is called $fragment in $file";
                }
            }
        }
    }

    /** @return list<string> the names of the packages that have an entry */
    public function packages(): array
    {
        $names = [];
        foreach ($this->pages as $page) {
            foreach ($page->querySelectorAll('article h3 a') as $link) {
                $names[] = $link->textContent;
            }
        }
        sort($names);
        return $names;
    }

    /** All that can be read in it but the templates: the texts of the pages, and the mails. */
    public function text(): string
    {
        $text = '';
        foreach (array_filter($this->pages, fn (string $name) => !str_starts_with($name, 'how/'), ARRAY_FILTER_USE_KEY) as $name => $page) {
            $text .= "== $name\n" . trim(preg_replace('/\s*\n\s*/', "\n", $page->body->textContent)) . "\n";
        }
        foreach ($this->mails as $name => $mail) {
            $text .= "== $name\n" . preg_replace('/^Date: .*/m', 'Date: now', $mail) . "\n";
        }
        return $text;
    }
}

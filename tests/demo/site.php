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
        foreach (glob("$folder/{,sections/}*.html", GLOB_BRACE) as $file) {
            $this->pages[substr($file, strlen($folder) + 1)] = Dom\HTMLDocument::createFromFile($file, LIBXML_NOERROR);
        }
        foreach (glob("$folder/mails/*.txt") as $file) {
            $this->mails[basename($file)] = file_get_contents($file);
        }
    }

    /** What two validators have to say about the pages. */
    public function invalid(): iterable
    {
        libxml_use_internal_errors(true);
        foreach ($this->pages as $name => $_) {
            $file = "$this->folder/$name";
            Dom\HTMLDocument::createFromFile($file);
            foreach (libxml_get_errors() as $error) {
                yield "$name:$error->line: " . trim($error->message);
            }
            libxml_clear_errors();
            $tidy = ['tidy', '-errors', '-quiet', '-utf8', '--drop-empty-elements', 'no', $file];
            [$status, , $complaints] = run($tidy);
            foreach (preg_split('/\n/', $complaints, -1, PREG_SPLIT_NO_EMPTY) as $complaint) {
                if (!str_contains($complaint, 'attribute "aria-current"')) {   // too new for tidy
                    yield "$name: $complaint";
                }
            }
            if ($status > 2) {
                yield "$name: tidy ended with exit status $status";
            }
        }
    }

    /** What the demo should say in the end and did not. */
    public function missingFrom(string $output): iterable
    {
        $pages = number_format(count($this->pages));
        $mails = number_format(count($this->mails));
        $texts = glob("$this->folder/{,sections/,mails/}*.{html,txt}", GLOB_BRACE);
        $bytes = number_format(array_sum(array_map(filesize(...), $texts)));
        foreach (["$pages pages, ", "$mails mails, ", "$bytes bytes ", 'ms in ', "$this->folder/index.html"] as $part) {
            if (!preg_match('~(?<![\d,])' . preg_quote($part, '~') . '~', $output)) {
                yield "nothing like \"$part\" in: $output";
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

    /** All that can be read in it: the texts of the pages, and the mails. */
    public function text(): string
    {
        $text = '';
        foreach ($this->pages as $name => $page) {
            $text .= "== $name\n" . trim(preg_replace('/\s*\n\s*/', "\n", $page->body->textContent)) . "\n";
        }
        foreach ($this->mails as $name => $mail) {
            $text .= "== $name\n" . preg_replace('/^Date: .*/m', 'Date: now', $mail) . "\n";
        }
        return $text;
    }
}

function php(string ...$arguments): array
{
    return [getenv('PHP'), '-n', '-d', 'memory_limit=1G', '-d', 'extension=' . getenv('TEMPLATE_SO'), ...$arguments];
}

function render(string $database, string $folder): array
{
    return run(php('examples/packages/site.php', $database, $folder));
}

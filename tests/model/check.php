<?php
/**
 * Compares what the command line's check says of random templates and data with what the extension writes.
 *
 *     php check.php [CASES [SEED]]
 *
 * Each tag that writes is replaced by a mark, one at a time. The number of marks tells how often the tag was reached,
 * and the page without them how many bytes it wrote: as many as check foresaw. Where a tag was reached more often than
 * check saw it write, there must be a finding at its place. What the engine refuses, check must call a fault, and only
 * that.
 */

declare(strict_types=1);

use TemplateCli\Check;
use TemplateCli\Check\Problem;
use TemplateCli\Check\Rule;
use TemplateCli\Engine;
use TemplateCli\Language\Keyword;
use TemplateCli\Language\Node;
use TemplateCli\Language\Reader;
use TemplateCli\Language\Reference;
use TemplateCli\Language\ReferenceKind;

require __DIR__ . '/../phpt/helper.inc';
require __DIR__ . '/../../cli/autoload.php';
require __DIR__ . '/random_cases.php';

const MARK = "\1\2\3";

/** How many bytes this text becomes in the page. */
function written(Node $node, string|Stringable $text): int
{
    $text = is_string($text) ? $text : explode("\0", (string) $text, 2)[0];
    $isTop = $node->reference?->kind === ReferenceKind::Root;
    $flags = ENT_COMPAT | ENT_HTML401;
    return strlen(match ($node->tag->keyword) {
        Keyword::Addslashes => addslashes($text),
        Keyword::Rawurlencode => rawurlencode($text),
        Keyword::Htmlentities => htmlentities($text, $flags, $isTop ? null : 'ISO-8859-1'),
        Keyword::Htmlspecialchars => htmlspecialchars($text, $flags, $isTop ? null : 'ISO-8859-1'),
        default => $text,
    });
}

/** @return array<string, string> files by name, the template itself under '' */
function in_place_of_each_tag(array $files): Generator
{
    foreach ($files as $name => $text) {
        $reader = new Reader($text);
        while (($tag = $reader->next()) !== null) {
            if (in_array($tag->keyword, [Keyword::Variable, Keyword::Addslashes, Keyword::Htmlentities, Keyword::Htmlspecialchars, Keyword::Rawurlencode], true)) {
                $marked = substr($text, 0, $tag->start) . "{'" . MARK . "'}" . substr($text, $tag->end);
                yield "$name\0$tag->start" => [$name, $marked];
            }
        }
    }
}

/** What is wrong with this case; null when nothing is. */
function difference(string $template, array $files, array $data, array &$counts): ?string
{
    $wrote = $times = [];
    $tell = function (Node $node, string|Stringable $text) use (&$wrote, &$times, $template): void {
        $id = str_replace("$template\0", "\0", $node->id());
        $wrote[$id] = ($wrote[$id] ?? 0) + written($node, $text);
        $times[$id] = ($times[$id] ?? 0) + 1;
    };
    $problems = new Check($template, $template)->problems($data, true, $tell);
    $faults = array_filter($problems, fn (Problem $problem) => in_array($problem->rule, [Rule::Fault, Rule::ObjectText], true));
    $outcome = new Engine()->render($template, $data, true);
    if ($outcome->result === null) {
        $counts['refused']++;
        $said = explode('%', explode("\0", $outcome->fault, 2)[0], 2)[0];
        $isKnown = fn (Problem $fault) => $fault->rule === Rule::ObjectText ? str_contains($said, 'could not be converted to string')
            : strncmp($said, explode('%', explode("\0", $fault->message, 2)[0], 2)[0], min(strlen($said), strcspn($fault->message, "\0%"))) === 0;
        return array_any($faults, $isKnown) ? null : "not found: $outcome->fault";
    }
    $counts[array_all($problems, fn (Problem $problem) => $problem->rule->isNote()) ? 'without findings' : 'with findings']++;
    if ($faults !== []) {
        return 'no fault: ' . reset($faults);
    }
    $places = [];
    foreach ($problems as $problem) {
        $places["{$problem->place->file}:{$problem->place->line}:{$problem->place->column}"] = true;
    }
    foreach (in_place_of_each_tag(['' => $template] + $files) as $id => [$name, $marked]) {
        $name === '' ?: file_put_contents($name, $marked);
        $page = new Engine()->render($name === '' ? $marked : $template, $data, true)->result;
        $name === '' ?: file_put_contents($name, $files[$name]);
        $reached = substr_count((string) $page, MARK);
        $counts['tags'] += (int) ($reached > 0);
        $expected = strlen($outcome->result) - strlen((string) $page) + $reached * strlen(MARK);
        if ($page !== null && $expected !== ($wrote[$id] ?? 0)) {
            return addcslashes("tag $id wrote $expected bytes, not " . ($wrote[$id] ?? 0), "\0..\37");
        }
        $source = new TemplateCli\Language\Source($name === '' ? $template : $name, $name === '' ? $template : $files[$name]);
        [$line, $column] = $source->position((int) substr(strrchr($id, "\0"), 1));
        if ($page !== null && $reached > ($times[$id] ?? 0) && !isset($places["$source->name:$line:$column"])) {
            return addcslashes("tag $id wrote nothing, and there is no finding", "\0..\37");
        }
    }
    return null;
}

$cases = (int) ($argv[1] ?? 400);
$seed = (int) ($argv[2] ?? 1);
in_folder_with([]);
$counts = ['refused' => 0, 'with findings' => 0, 'without findings' => 0, 'tags' => 0];
$failed = 0;
for ($number = $seed; $number < $seed + $cases; $number++) {
    $source = new RandomCases($number);
    ['template' => $template, 'files' => $files, 'data' => $data] = $source->next();
    foreach ($files as $name => $content) {
        file_put_contents($name, $content);
    }
    $difference = difference($template, $files, $data, $counts);
    if ($difference !== null && ++$failed <= 3) {
        echo "case $number: $difference\n", printable(['template' => $template] + (str_contains($template, '{include') ? $files : []) + $data), "\n\n";
    }
}
echo json_encode($counts), "\n";
if ($cases >= 400 && (min($counts) < $cases / 100 || $counts['tags'] < $cases)) {
    echo "the cases are too much alike\n";
    $failed++;
}
printf("%d passed, %d failed\n", max(0, $cases - $failed), $failed);
exit($failed === 0 ? 0 : 1);

<?php
declare(strict_types=1);

/*
 * Renders one template that anybody may have written, in a process of its own, and ends.
 *
 * Standard input has {"template": text, "data": JSON as text} as JSON. Standard output gets one line of JSON with what came of
 * it, and, if there is time and memory left, two more: what the scanner of the command line says about the template (places
 * of faults, and hints), and what its check says about template and data. src/render.php starts it, with limits.
 *
 * A template can do one thing to the machine: name files to include. So what is taken away is the reach of names: all
 * stream wrappers but that of plain files, and all folders but the one with the includes.
 */

use TemplateCli\Check;
use TemplateCli\Check\Problem;
use TemplateCli\Language\Fault;
use TemplateCli\Language\Hint;
use TemplateCli\Language\HintKind;
use TemplateCli\Language\Scanner;
use TemplateCli\Language\Slot;

const MOST_RESULT = 1 << 20;
const MOST_COMPLAINTS = 20;
const THIS_TEMPLATE = 'this template';
const INCLUDES = __DIR__ . '/../includes';

register_shutdown_function(function () use (&$stage): void {
    $error = error_get_last();
    if ($stage === 'rendering' && $error !== null) {
        // PHP's own fatal error, of a limit as a rule
        say(['result' => null, 'complaints' => [['level' => 'Fatal error', 'message' => $error['message']]]]);
    }
});

$request = json_decode(stream_get_contents(STDIN), true, flags: JSON_THROW_ON_ERROR);
require_once __DIR__ . '/data.php';
foreach (['Language/*', 'Contract/*', 'Check/*', 'Check'] as $classes) {
    foreach (glob(__DIR__ . "/../../../cli/src/$classes.php") as $file) {
        class_exists('TemplateCli\\' . strtr(substr($file, strlen(__DIR__ . '/../../../cli/src/'), -4), '/', '\\'));   // none can be loaded later
    }
}
$data = read_data($request['data']);
set_include_path('.');
chdir(INCLUDES);
foreach (array_diff(stream_get_wrappers(), ['file']) as $wrapper) {
    stream_wrapper_unregister($wrapper);
}
ini_set('open_basedir', realpath(INCLUDES));

$stage = 'rendering';
say(rendered($request['template'], $data));
$stage = 'scanning';
say(scanned($request['template'], $data));
say(checked($request['template'], $data));

/** What template() returned, what was raised, and the time of the call. */
function rendered(string $template, array $data): array
{
    $complaints = [];
    set_error_handler(function (int $level, string $message) use (&$complaints): bool {
        if (count($complaints) < MOST_COMPLAINTS) {
            $complaints[] = ['level' => level_name($level), 'message' => $message];
        }
        return true;
    });
    $start = hrtime(true);
    try {
        $result = template($template, $data, true);
    } catch (Throwable $thrown) {
        $result = null;
        $complaints[] = ['level' => $thrown::class, 'message' => $thrown->getMessage()];
    }
    $nanoseconds = hrtime(true) - $start;
    restore_error_handler();
    if (strlen($result ?? '') > MOST_RESULT) {
        $complaints[] = ['level' => 'Limit', 'message' => 'The result has ' . number_format(strlen($result)) . ' bytes; the playground shows up to ' . number_format(MOST_RESULT) . '.'];
        $result = null;
    }
    return ['result' => $result, 'complaints' => $complaints, 'microseconds' => round($nanoseconds / 1000, 1)];
}

function level_name(int $level): string
{
    return match ($level) {
        E_WARNING, E_USER_WARNING => 'Warning',
        E_DEPRECATED, E_USER_DEPRECATED => 'Deprecated',
        default => 'Notice',
    };
}

/** Places of what the engine refuses, and hints on what it accepts. */
function scanned(string $template, array $data): array
{
    $scan = new Scanner(Slot::top($data, true))->scanText($template, THIS_TEMPLATE);
    $here = fn (Fault $fault): bool => $fault->place->file === THIS_TEMPLATE;
    // with data at hand, the check knows these better
    $kept = fn (Hint $hint): bool => !in_array($hint->kind, [HintKind::MissingInclude, HintKind::UnknownSection], true);
    return [
        'faults' => array_map(described(...), array_slice(array_values(array_filter($scan->faults, $here)), 0, MOST_COMPLAINTS)),
        'hints' => array_map(described(...), array_slice(array_values(array_filter($scan->hints, $kept)), 0, MOST_COMPLAINTS)),
    ];
}

/** What of the data the template does not print as one expects. What lies in an included file has its name, and no place. */
function checked(string $template, array $data): array
{
    $problems = new Check(THIS_TEMPLATE, $template, isDecoded: true)->problems($data);
    $ofData = array_filter($problems, fn (Problem $problem): bool => !$problem->rule->isOfTemplate());
    return array_map(
        fn (Problem $problem): array => $problem->place->file === THIS_TEMPLATE ? described($problem) : ['message' => "$problem"],
        array_slice(array_values($ofData), 0, MOST_COMPLAINTS),
    );
}

function described(Fault|Hint|Problem $found): array
{
    $place = $found->place;
    return [
        'message' => $found instanceof Problem ? $found->text() : $found->message,
        'line' => $place->line,
        'column' => $place->column,
        'endLine' => $place->endLine,
        'endColumn' => $place->endColumn,
    ] + array_filter([
        'note' => $found instanceof Fault ? $found->note : '',
        'level' => $found instanceof Hint && $found->kind->isFault() ? 'Fault' : '',
    ]);
}

function say(array $line): void
{
    echo json_encode($line, JSON_UNESCAPED_UNICODE | JSON_UNESCAPED_SLASHES | JSON_INVALID_UTF8_SUBSTITUTE), "\n";
}

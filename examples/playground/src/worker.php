<?php
declare(strict_types=1);

/*
 * Renders one template that anybody may have written, in a process of its own, and ends.
 *
 * Standard input has {"template": text, "data": array} as JSON. Standard output gets one line of JSON with what came of
 * it, and, if there is time and memory left, a second one with what the scanner of the command line says about the
 * template: places of faults, and hints. src/render.php starts it, with limits.
 *
 * A template can do one thing to the machine: name files to include. So what is taken away is the reach of names: all
 * stream wrappers but that of plain files, and all folders but the one with the includes.
 */

use TemplateCli\Language\HintKind;
use TemplateCli\Language\Place;
use TemplateCli\Language\Scanner;

const MOST_RESULT = 1 << 20;
const MOST_COMPLAINTS = 20;
const INCLUDES = __DIR__ . '/../includes';

register_shutdown_function(function () use (&$stage): void {
    $error = error_get_last();
    if ($stage === 'rendering' && $error !== null) {
        // PHP's own fatal error, of a limit as a rule
        say(['result' => null, 'complaints' => [['level' => 'Fatal error', 'message' => $error['message']]]]);
    }
});

$request = json_decode(stream_get_contents(STDIN), true, flags: JSON_THROW_ON_ERROR);
foreach (glob(__DIR__ . '/../../../cli/src/Language/*.php') as $file) {
    require_once $file;   // none can be loaded later
}
set_include_path('.');
chdir(INCLUDES);
foreach (array_diff(stream_get_wrappers(), ['file']) as $wrapper) {
    stream_wrapper_unregister($wrapper);
}
ini_set('open_basedir', realpath(INCLUDES));

$stage = 'rendering';
say(rendered($request['template'], $request['data']));
$stage = 'scanning';
say(scanned($request['template'], $request['data']));

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
    $scan = new Scanner($data)->scanText($template);
    $place = fn (Place $place): array => ['line' => $place->line, 'column' => $place->column];
    $faults = $hints = [];
    foreach ($scan->faults as $fault) {
        if ($fault->place->file === $template) {
            $faults[] = ['message' => $fault->message] + $place($fault->place);
        }
    }
    foreach ($scan->hints as $hint) {
        if (!in_array($hint->kind, [HintKind::RawHtml, HintKind::PercentName], true)) {   // of files
            $hints[] = ['message' => $hint->message] + $place($hint->place);
        }
    }
    return ['faults' => array_slice($faults, 0, MOST_COMPLAINTS), 'hints' => array_slice($hints, 0, MOST_COMPLAINTS)];
}

function say(array $line): void
{
    echo json_encode($line, JSON_UNESCAPED_UNICODE | JSON_UNESCAPED_SLASHES | JSON_INVALID_UTF8_SUBSTITUTE), "\n";
}

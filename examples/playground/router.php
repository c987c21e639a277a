<?php
declare(strict_types=1);

/*
 * The playground: a page on which to try templates. It is for PHP's built-in server, on this machine only:
 *
 *     php -S 127.0.0.1:8000 examples/playground/router.php
 *
 * The way of a request: this file says who may ask for what; src/pages.php makes the data of a page, and template() the
 * page; what the editor sends goes to src/render.php, which has src/worker.php render it in a process of its own.
 */

require __DIR__ . '/../highlight.php';
require __DIR__ . '/src/gallery.php';
require __DIR__ . '/src/manual.php';
require __DIR__ . '/src/pages.php';
require __DIR__ . '/src/render.php';

set_include_path(__DIR__ . '/templates');

// The result of a template is shown in a frame, which inherits this policy: nothing is loaded, nothing runs, and only
// styles work. They may be inline for the frame's sake.
const POLICY = "default-src 'none'; script-src 'self'; style-src 'self' 'unsafe-inline'; img-src data:; connect-src 'self'; "
    . "frame-src 'none'; frame-ancestors 'none'; base-uri 'none'; form-action 'none'";

define('BUNDLE', getenv('PLAYGROUND_BUNDLE') ?: '/nowhere');

header_remove('X-Powered-By');
header('Content-Security-Policy: ' . POLICY);
header('X-Content-Type-Options: nosniff');
header('Referrer-Policy: no-referrer');
header('Cross-Origin-Opener-Policy: same-origin');
header('Cross-Origin-Resource-Policy: same-origin');
header('Cache-Control: no-store');

// A foreign page must not reach this server under a name of its own that leads here.
if (!preg_match('/^(localhost|127\.0\.0\.1|\[::1\])(:\d+)?$/D', $_SERVER['HTTP_HOST'] ?? '')) {
    send(421, 'text/plain', "This site is called localhost.\n");
    return;
}

$path = parse_url($_SERVER['REQUEST_URI'], PHP_URL_PATH);
match ("{$_SERVER['REQUEST_METHOD']} $path") {
    'GET /', 'HEAD /' => send_page('playground.html.tpl', playground_page(read_gallery(), $_GET['example'] ?? null)),
    'GET /gallery', 'HEAD /gallery' => send_page('gallery.html.tpl', gallery_page(read_gallery())),
    'GET /playground.css' => send_file('playground.css', 'text/css'),
    'GET /playground.js' => send_file('playground.js', 'text/javascript'),
    'GET /areas.js' => send_file('areas.js', 'text/javascript'),
    'GET /bundle/editor.js', 'GET /bundle/manual.js' => send_bundled(basename($path)),
    'POST /render' => send_answer(),
    default => send_page('manual.html.tpl', manual_page($path)),
};

function send_page(string $template, ?array $data, int $status = 200): void
{
    if ($data === null) {
        send_page('missing.html.tpl', missing_page(), 404);
        return;
    }
    send($status, 'text/html', template($template, $data));
}

function send_file(string $name, string $type): void
{
    send(200, $type, file_get_contents(__DIR__ . "/public/$name"));
}

/** What ./dev serve makes of packages from npm; nothing where they cannot be had. */
function send_bundled(string $name): void
{
    is_file(BUNDLE . "/$name")
        ? send(200, 'text/javascript', file_get_contents(BUNDLE . "/$name"))
        : send(404, 'text/plain', "The packages for this were not to be had.\n");
}

/** A type that only scripts of this site may send: other sites' browsers would have to ask first, and are not allowed. */
function send_answer(): void
{
    if (!str_starts_with($_SERVER['CONTENT_TYPE'] ?? '', 'application/json')) {
        [$status, $answer] = [415, ['fault' => 'Send application/json.']];
    } elseif ((int) ($_SERVER['CONTENT_LENGTH'] ?? 0) > MOST_BODY) {
        [$status, $answer] = [413, ['fault' => 'That is too much.']];
    } else {
        [$status, $answer] = answer(file_get_contents('php://input'));
    }
    send($status, 'application/json', json_encode($answer, JSON_UNESCAPED_UNICODE | JSON_UNESCAPED_SLASHES | JSON_INVALID_UTF8_SUBSTITUTE));
}

function send(int $status, string $type, string $text): void
{
    http_response_code($status);
    header("Content-Type: $type; charset=utf-8");
    echo $text;
}

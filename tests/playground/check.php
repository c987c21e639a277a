<?php
declare(strict_types=1);

/* The playground without a browser: its pages, the gallery, what it answers, and what it refuses. */

require __DIR__ . '/../lib/harness.php';
require __DIR__ . '/../../examples/playground/src/gallery.php';
require __DIR__ . '/site.php';

$limits = !getenv('TEST_ASAN');   // a sanitized PHP takes its time
$skipped = 0;

$site = Site::start();
register_shutdown_function($site->stop(...));

/** What a rendering shows: [result, messages]. */
function outcome(array $answer): array
{
    return [$answer['result'] ?? null, array_column($answer['complaints'] ?? [], 'message')];
}

/** As the tag htmlspecialchars writes it. */
function escaped(string $text): string
{
    return htmlspecialchars($text, ENT_COMPAT);
}

echo "-- pages\n";

$examples = all_examples(read_gallery());
[$status, $page, $headers] = $site->ask('GET', '/');
check('the editor comes with the first example', differences(
    [200, true, true],
    [$status, str_contains($page, escaped($examples[0]['template'])), str_contains($page, escaped($examples[0]['data']))]
));
preg_match_all('~\b(?:src|href)="(?:https?:|//)~', $page, $foreign);
$rules = ["default-src 'none'", "script-src 'self';", "connect-src 'self'", "frame-src 'none'"];
check('nothing may be loaded from elsewhere, or run in the page', differences([[], [], true],
    [array_filter($rules, fn ($rule) => !str_contains($headers['content-security-policy'] ?? '', $rule)), $foreign[0], str_contains($page, ' sandbox ')]));
[, $gallery] = $site->ask('GET', '/gallery');
$gallery = preg_replace('~</?(mark|b)>~', '', $gallery);   // the colours of tags
$is_shown = fn (array $example) => str_contains($gallery, '<h3>' . escaped($example['title']) . '</h3>')
    && str_contains($gallery, escaped($example['template']))
    && str_contains($site->ask('GET', "/?example={$example['slug']}")[1], ">\n" . escaped($example['template']) . '</textarea>');
check('the gallery shows every example and leads to it', differences([], array_column(array_filter($examples, fn ($example) => !$is_shown($example)), 'title')));
check('other addresses lead nowhere', differences([404, 404, 404, 404, 404, 404], array_map(fn (string $path) => $site->ask('GET', $path)[0], [
    '/nothing', '/?example=nothing', '/?example[]=a', '/router.php', '/src/worker.php', '/..%2f..%2fREADME.md',
])));

echo "-- the gallery\n";

foreach ($examples as $example) {
    [$status, $answer] = $site->render($example['template'], $example['data']);
    [$result, $messages] = outcome($answer);
    if ($result !== ($example['output'] ?? null)) {
        $result = preg_replace('/\n\z/', '', $result ?? '') ?: $result;   // a fence does not show the last line end
    }
    check($example['title'], differences(
        [200, $example['output'] ?? null, isset($example['warning']) ? [$example['warning']] : []],
        [$status, $result, $messages]
    ));
}

echo "-- answers\n";

[, $answer] = $site->render("{x} é\n  é{a:::b} 50% {y:::z}");
check('a warning has its place, in characters', differences(
    [[2, 4, "Bad formated parameter'a:::b': too many : in this template"], [2, 16, "Bad formated parameter'y:::z': too many :"]],
    array_map(fn (array $complaint) => [$complaint['line'], $complaint['column'], $complaint['message']], $answer['complaints'])
));
check('a fault that only other data brings up is a hint, and so is what is printed raw', differences(
    [[], ['printed raw inside HTML: r::* a:::b', "With other data: Bad formated parameter'a:::b': too many :"]],
    (fn (array $answer) => [$answer['complaints'], array_column($answer['hints'], 'message')])($site->render('<p>{dynamic r,rows}{r::* a:::b}{/dynamic}')[1])
));
check('what the data lacks is found', differences(
    ['title: there is no "title": prints nothing (did you mean "titel"?)'],
    array_column($site->render('{htmlspecialchars title}', '{"titel": "Tea"}')[1]['findings'], 'message')
));
check('what is told leads to its place in the manual', (function () use ($site, $examples) {
    foreach ([['', '{"a":'], [str_repeat('{dynamic r}', 4) . 'xxxxxxxxx', '{}'], ...array_map(fn ($example) => [$example['template'], $example['data']], $examples)] as [$template, $data]) {
        $answer = $site->render($template, $data)[1];
        foreach ([...$answer['complaints'] ?? [$answer], ...$answer['hints'] ?? [], ...$answer['findings'] ?? []] as $told) {
            [$path, $id] = explode('#', $told['page']);
            if (!str_contains($site->ask('GET', $path)[1], "<section id=\"$id\">") || str_contains($told['page'], 'playground') !== isset($told['of'])) {
                yield "{$told['page']}, for " . ($told['message'] ?? $told['fault']);
            }
        }
    }
})());
[, $answer] = $site->render('Dear {name, your {thing}', '{"name": 1}');
check('a hint has its place', differences([[1, 6]], array_map(fn (array $hint) => [$hint['line'], $hint['column']], $answer['hints'])));
check('data keeps its types', differences(
    ["1 1.5 1 12345678901234567890 INF | é\u{1F600}", []],
    outcome($site->render('{i} {f} {t} {big} {inf} {n}{no}| {text}', '{"i":1,"f":1.5,"t":true,"big":12345678901234567890,"inf":1e999,"n":null,"no":false,"text":"é\ud83d\ude00"}')[1])
));
check('what is no JSON object is told', differences([[422, 'data'], [422, 'data'], [422, 'data']], array_map(function (string $data) use ($site) {
    [$status, $answer] = $site->render('', $data);
    return [$status, $answer['of']];
}, ['{"a":', '5', str_repeat('[', 600) . str_repeat(']', 600)])));

echo "-- confinement\n";

$outside = sys_get_temp_dir() . '/playground-' . getmypid();
mkdir($outside);
file_put_contents("$outside/secret.tpl", 'the secret');
register_shutdown_function(fn () => exec('rm -r ' . escapeshellarg($outside)));
$includes = realpath('examples/playground/includes');
$way_out = str_repeat('../', substr_count($includes, '/') + 1);
$listener = stream_socket_server('tcp://127.0.0.1:0');
$name = stream_socket_get_name($listener, false);
foreach ([
    "$outside/secret.tpl", "file://$outside/secret.tpl", "$way_out$outside/secret.tpl", "./$way_out$outside/secret.tpl",
    '../src/worker.php', "$includes/../src/worker.php", '/etc/passwd', '/proc/self/environ', '/proc/self/cmdline', '/dev/stdin', '/proc/self/fd/0', '/dev/zero',
    "php://filter/read=string.rot13/resource=$outside/secret.tpl", 'php://stdin', 'php://memory', 'data:,secret', 'data://text/plain;base64,c2VjcmV0',
    "glob://$outside/*", "phar://$outside/secret.tpl/a", "compress.zlib://$outside/secret.tpl", "http://$name/", "ftp://$name/", "PHP://stdin", '.', '',
] as $file) {
    $found = [];
    foreach ([["{include $file}", '{}'], ['{include file}', json_encode(['file' => $file], JSON_UNESCAPED_SLASHES)]] as [$template, $data]) {
        // a "{" in a name would be a tag of its own; there is none in these
        [$status, $answer] = $site->render($template, $data);
        if ($status !== 200 || ($answer['result'] ?? '') !== '') {
            $found[] = "$status: " . substr(shown($answer), 0, 200);
        }
    }
    check("nothing is included from \"$file\"", $found);
}
stream_set_blocking($listener, false);
check('nobody was called', differences(false, (bool) @stream_socket_accept($listener, 0)));
check('a file of the folder is included, under its absolute name too', differences(
    ["<aside>Tea is served at four.</aside>\n", []],
    outcome($site->render('{include file}', json_encode(['file' => "$includes/side.tpl"]))[1])
));

echo "-- limits\n";

$rows = json_encode(['r' => range(1, 100)]);
$nested = fn (int $depth, string $body): string => str_repeat('{dynamic r}', $depth) . $body . str_repeat('{/dynamic}', $depth);
foreach ([
    'a result that fills the memory' => [$nested(8, str_repeat('x', 1000)), $rows, '/^Allowed memory size of \d+ bytes exhausted/'],
    'a template that takes for ever' => [$nested(12, ''), $rows, '/^Maximum execution time of 1 second exceeded/'],
    'a result that is too long to show' => [$nested(3, 'xxxxx'), $rows, '/^The result has 5,000,000 bytes/'],
    'sections nested without end' => [str_repeat('{optional r}', 5000), $rows, '/^(Missing closing tag|Template nesting is too deep) in this template$/'],
] as $what => [$template, $data, $message]) {
    if (!$limits) {
        $skipped++;
        continue;
    }
    [$status, $answer] = $site->render($template, $data);
    [$result, $messages] = outcome($answer);
    check("$what ends with an error", differences([200, null, 1], [$status, $result, preg_match($message, $messages[0] ?? '')]));
    check('and the server goes on', differences(['1', []], outcome($site->render('{a}', '{"a":1}')[1])));
}
[, $answer] = $site->render(str_repeat('{a}', 1000), '{"a":[]}');
check('complaints without end are cut', differences(20, count($answer['complaints'])));
check('too long a template and too long data are refused', differences([413, 413, 413], [
    $site->render(str_repeat('x', 65537))[0],
    $site->render('', '"' . str_repeat('x', 262144) . '"')[0],
    $site->ask('POST', '/render', ['Content-Type: application/json'], str_repeat('x', 4 << 20))[0],
]));

echo "-- who may ask\n";

$request = '{"template": "a", "data": "{}"}';
check('a form of a foreign page cannot ask', differences([415, 415], [
    $site->ask('POST', '/render', ['Content-Type: text/plain'], $request)[0],
    $site->ask('POST', '/render', ['Content-Type: application/x-www-form-urlencoded'], $request)[0],
]));
check('a name that leads here cannot be anybody\'s', differences([421, 421, 200], [
    $site->ask('GET', '/', ['Host: evil.example'])[0],
    $site->ask('POST', '/render', ['Host: localhost.evil.example', 'Content-Type: application/json'], $request)[0],
    $site->ask('GET', '/', ['Host: localhost:9000'])[0],
]));
check('requests that make no sense are refused', differences([400, 400, 400, 404], [
    $site->ask('POST', '/render', ['Content-Type: application/json'], 'x')[0],
    $site->ask('POST', '/render', ['Content-Type: application/json'], '{"template": ["a"], "data": "{}"}')[0],
    $site->ask('POST', '/render', ['Content-Type: application/json'], '"template"')[0],
    $site->ask('PUT', '/')[0],
]));
check('the server is still there', differences(true, $site->isRunning()));

echo "\n$passed passed, $failed failed", $skipped ? ", $skipped skipped" : '', "\n";
exit($failed ? 1 : 0);

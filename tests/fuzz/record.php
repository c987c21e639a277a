<?php
// Stands in for the extension while the tests run, and keeps what they give to template() as inputs
// of the fuzzers, in the folder SEEDS. Loaded before each test by ./dev fuzz --seeds.

function template(string $fileName, array $userData, bool $string_mode = false): ?string
{
    $text = $string_mode ? $fileName : @file_get_contents($fileName, true);
    if (is_string($text) && strlen($text) < 4096) {
        $files = [];
        $text = with_numbered_files($text, $files);
        $parts = [$string_mode ? '' : 'F', members($userData), $text, ...$files];
        $input = implode("\x1e", $parts);
        if (strlen($input) < 8192) {
            file_put_contents(getenv('SEEDS') . '/' . sha1($input), $input);
        }
    }
    return '';
}

/** Included files become parts of the input, with their number for a name. */
function with_numbered_files(string $text, array &$files): string
{
    return preg_replace_callback('/\{include\s*([^\s{}]+)/', function (array $match) use (&$files) {
        $content = is_file($match[1]) ? file_get_contents($match[1]) : null;
        if ($content === null || count($files) > 5) {
            return $match[0];
        }
        $files[] = '';
        $number = count($files);
        $files[$number - 1] = with_numbered_files($content, $files);
        return "{include $number";
    }, $text);
}

/** The notation that the harness's Decoder reads. */
function encoded(mixed $value): string
{
    return match (true) {
        $value === null => 'n',
        is_bool($value) => $value ? 't' : 'f',
        is_int($value) => "i$value;",
        is_float($value) => "d$value;",
        is_string($value) => 's' . strtr($value, "\x1e\x1f", '--') . "\x1f",
        is_array($value) => 'a' . members($value) . ']',
        $value instanceof ArrayObject => 'oa' . members((array) $value) . ']',
        $value instanceof Stringable => 'ohw;]',
        is_object($value) => 'os' . members(get_object_vars($value)) . ']',
        default => 'h',
    };
}

function members(array $members, int $depth = 0): string
{
    $text = '';
    foreach ($members as $key => $value) {
        $mark = ReflectionReference::fromArrayElement($members, $key) ? '&' : '';
        $text .= strtr((string) $key, "=\x1e", '--') . "=$mark" . (strlen($text) > 8192 ? 'n' : encoded($value));
    }
    return $text;
}

--TEST--
Constants are escaped in the default charset, elements in ISO-8859-1 whatever it is
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$template = '{htmlentities v}|{htmlspecialchars v}|{dynamic rows}{htmlentities *}|{htmlspecialchars *}{/dynamic}';
$texts = ['ascii' => '<&">', 'latin1' => "\xE9\x80<", 'utf8' => "\u{20ac}\u{e9}<", 'cyrillic' => "\xCF\xF0<", 'sjis' => "\x82\xA0<", 'broken' => "a\xFF\xFE<\xC0"];
$charsets = ['UTF-8', 'ISO-8859-1', 'ISO-8859-15', 'cp1252', 'cp1251', 'KOI8-R', 'cp866', 'Shift_JIS', 'EUC-JP', 'BIG5', 'GB2312', ''];

/** What PHP's own functions give and say; here template() is the function that says it. */
function own_escaping(string $text): array
{
    $messages = [];
    set_error_handler(function (int $level, string $message) use (&$messages): bool {
        $messages[] = preg_replace('/^html\w+\(\)/', 'template()', $message);
        return true;
    });
    $constant = htmlentities($text, ENT_COMPAT) . '|' . htmlspecialchars($text, ENT_COMPAT);
    restore_error_handler();
    $element = htmlentities($text, ENT_COMPAT, 'ISO-8859-1') . '|' . htmlspecialchars($text, ENT_COMPAT, 'ISO-8859-1');
    return ["$constant|$element", ...$messages];
}

foreach ($charsets as $charset) {
    ini_set('default_charset', $charset);
    foreach ($texts as $name => $text) {
        if (outcome($template, ['v' => $text, 'rows' => [$text]]) !== own_escaping($text)) {
            echo "$charset, $name: differs\n";
        }
    }
}

// internal_encoding wins over default_charset.
ini_set('default_charset', 'UTF-8');
@ini_set('internal_encoding', 'ISO-8859-1');
echo json_encode(outcome('{htmlentities v}', ['v' => "\xE9"])), "\n";

// A charset that PHP does not know is reported by PHP, for constants only.
@ini_set('internal_encoding', 'no-such-charset');
echo json_encode(outcome('{htmlentities v}', ['v' => "\u{e9}"])), "\n";
echo json_encode(outcome('{dynamic rows}{htmlentities *}{/dynamic}', ['rows' => ["\xE9"]])), "\n";
--EXPECT--
["&eacute;"]
["&eacute;","template(): Charset \"no-such-charset\" is not supported, assuming UTF-8"]
["&eacute;"]

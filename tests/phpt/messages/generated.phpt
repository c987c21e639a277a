--TEST--
Every conversion with all flags, widths, precisions and modifiers, in texts, in file names and in a text of 10 MB
--EXTENSIONS--
template
--SKIPIF--
<?php
if (getenv('TEST_VALGRIND')) {
    echo 'skip takes longer under valgrind than a test may';
}
?>
--INI--
memory_limit=256M
--FILE--
<?php
require __DIR__ . '/../helper.inc';

const CONVERSION = '/%(?:(?![a-z\x80-\xff])([-+# 0]*)(\*|\d*)(?:\.(\*|\d*))?)?(?:ll|hh|[Llzjth])?(.?)/s';

/**
 * How a message shows. What takes an argument, or is wider than 99, shows as it was written: its % is
 * text, and what stood behind it is read anew. The rest is a % and its byte, or nothing at the end.
 */
function shown(string $message): string
{
    $shown = '';
    for ($at = 0; preg_match(CONVERSION, $message, $found, PREG_OFFSET_CAPTURE, $at); ) {
        [$whole, $start] = $found[0];
        [, $flags, $width, $precision, $byte] = array_column($found + ['', '', '', '', ['']], 0);
        $shown .= substr($message, $at, $start - $at);
        $takesArgument = in_array('*', [$width, $precision], true) || ($byte !== '' && str_contains('diouxXsSZcfFeEgGkHpn', $byte));
        if ($takesArgument || max((int) $width, (int) $precision) > 99) {
            $shown .= '%';
            $at = $start + 1;
        } elseif ($byte === '') {
            return $shown;
        } else {
            $text = $byte === '%' ? '%' : "%$byte";
            $shown .= str_contains($flags, '-') ? str_pad($text, (int) $width) : str_pad($text, (int) $width, ' ', STR_PAD_LEFT);
            $at = $start + strlen($whole);
        }
    }
    return $shown . substr($message, $at);
}

function compare_shown(string $situation, string $message, array $seen): int
{
    $expected = shown($message);
    if ($seen === [null, $expected]) {
        return 0;
    }
    for ($at = 0; ($seen[1][$at] ?? '') === ($expected[$at] ?? 0); $at++);
    echo "$situation: ", printable([$seen[0], count($seen), substr($expected, $at, 30), substr($seen[1] ?? '', $at, 30)]), "\n";
    return 1;
}

$bytes = array_map('chr', range(1, 255));
$tried = $wrong = 0;
foreach (['', '-', '+', '#', ' ', '0', '-0', '+# '] as $flags) {
    foreach (['', '1', '12', '99', '100', '2000000000', '*'] as $width) {
        foreach (['', '.', '.3', '.100', '.*'] as $precision) {
            foreach (['', 'l', 'll', 'L', 'z', 'j', 't', 'h', 'hh'] as $modifier) {
                $conversion = "%$flags$width$precision$modifier";
                $text = "{/dynamic}$conversion" . implode("|$conversion", $bytes);
                $tried++;
                $wrong += compare_shown("text $conversion", "Unexpected closing dynamic tag in $text", outcome($text));
                // A / would make a folder of what is before it, which does not matter: there is none.
                foreach ([...array_chunk($bytes, 85), ['']] as $part) {
                    $name = 'nosuch ' . implode("|$conversion", ['', ...$part]);
                    $wrong += compare_shown("name $conversion", "Could not open file $name", outcome($name, [], false));
                }
            }
        }
    }
}
echo $tried * count($bytes), " conversions, $wrong wrong\n";

// What the formatter may pad in one message is bounded as a whole: from 64 KB on, nothing is padded.
$seen = outcome('{/dynamic}' . str_repeat('%99y|', 10_000))[1];
echo json_encode([strlen($seen) < 200_000, substr_count($seen, ' %y|') === intdiv(65536, 99), substr($seen, -10)]), "\n";

$unit = '%s%n%*d|%-08.3f|%%|%y|%2000000000d|100%;|%';
$text = '{/dynamic}' . str_repeat("$unit|", intdiv(10 << 20, strlen($unit) + 1));
$seen = outcome($text);
$expected = 'Unexpected closing dynamic tag in {/dynamic}' . str_repeat(shown("$unit|"), intdiv(10 << 20, strlen($unit) + 1));
echo json_encode([strlen($text) > 10_000_000, $seen === [null, $expected]]), "\n";
?>
--EXPECT--
642600 conversions, 0 wrong
[true,true,"%99y|%99y|"]
[true,true]

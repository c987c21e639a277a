--TEST--
A message is the format of PHP's formatter: what needs no argument is formatted, what needs one is left alone
--FILE--
<?php
require __DIR__ . '/../helper.inc';

// What needs no argument is formatted in the formatter's own way, and dropped at the end of a message.
$formatted = [
    '100%%' => '100%', '%%d' => '%d', '%%%%s' => '%%s', 'width:100%;' => 'width:100%;', '%y' => '%y', '% y' => '%y',
    '%-+#y' => '%y', '%lq' => '%q', '%hhq' => '%q', '%!' => '%!', "%\u{e9}" => "%\u{e9}", '%:%;' => '%:%;', '% %' => '%',
    '%%%s%%' => '%%s%', '% %s' => '%s', '%%%n' => '%%n', '%*%%' => '%*%',
    '%5%|%-5%|%05%|%5.2q|' => '    %|%    |    %|   %q|', '%l%%ly' => '%%y', '%99%' => str_repeat(' ', 98) . '%', '%.99q%.100q' => '%q%.100q',
];
$dropped = ['a%' => 'a', 'a%-' => 'a', 'a%l' => 'a'];
// What needs an argument stays as it was written.
$written = ['50% off', '%2F', 'a%sb', '%s%s%s%s%s%s%s%s', '%d %i %u %o %x %X', '%c %f %F %e %E %g %G %H %k', '%S %Z %p', '%n',
    '%hhn%ln%jn', '%ld %lld %zu %jd %td %Lf %hd', '%pd', '%*d', '%*y', '%.*y', '%-08.3f', '%*%s', '%100q'];

// In string mode the text is part of the message; in file mode a part of the name.
$texts = $formatted + array_combine($written, $written);
foreach ($texts as $text => $shown) {
    $cases["text $text"] = ["$text|{/dynamic}", [], null, "Unexpected closing dynamic tag in $shown|{/dynamic}"];
    $cases["reference $text"] = ["{addslashes a::$text|:::}", [], null,
        "Bad formated parameter'a::$shown|:::': too many : in {addslashes a::$shown|:::}"];
}
check($cases, ['text']);
foreach ($texts + $dropped as $text => $shown) {
    $seen = outcome("nosuch $text", [], false);
    if ($seen !== [null, "Could not open file nosuch $shown"]) {
        echo "nosuch $text: ", json_encode($seen), "\n";
    }
}

// A long message is formatted as a short one is, and no width makes it much longer.
$seen = outcome('{/dynamic}' . str_repeat('%s%n%*d|%%|%y|%2000000000d|100%;|', 300_000));
var_dump($seen === [null, 'Unexpected closing dynamic tag in {/dynamic}' . str_repeat('%s%n%*d|%|%y|%2000000000d|100%;|', 300_000)]);
var_dump(strlen(outcome('{/dynamic}' . str_repeat('%99y|', 10_000))[1]) < 200_000);
// An absurd width is no reason to write a gigabyte of blanks.
foreach (['%2000000000;', '%.2000000000;', '%99999999999999999999;', '%-2000000000%'] as $text) {
    $message = outcome("nosuch $text", [], false)[1];
    echo json_encode(str_starts_with($message, 'Could not open file nosuch ')), ' ', json_encode(strlen($message) < 1000), "\n";
}

// Data is no part of a message, and no part of the result is formatted.
echo json_encode(outcome('{v}%d%%{x::%s}', ['v' => '%s%n'])), "\n";
// The message ends at a NUL byte, as every text does that C code formats.
echo json_encode(outcome("a\0b{/dynamic}")), "\n";
--EXPECT--
as expected
bool(true)
bool(true)
true true
true true
true true
true true
["%s%n%d%%{x::%s}"]
[null,"Unexpected closing dynamic tag in a"]

--TEST--
A message is the format of PHP's formatter: what needs no argument is formatted, what needs one is left alone
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

// In string mode the text is part of the message; in file mode a part of the name.
$texts = [
    // needs no argument: the formatter's own way
    '100%%' => '100%',
    '%%d' => '%d',
    '%%%%s' => '%%s',
    'width:100%;' => 'width:100%;',
    'a%' => 'a',
    'a%-' => 'a',
    'a%l' => 'a',
    '%y' => '%y',
    '% y' => '%y',
    '%-+#y' => '%y',
    '%lq' => '%q',
    '%hhq' => '%q',
    '%!' => '%!',
    "%\u{e9}" => "%\u{e9}",
    '%:%;' => '%:%;',
    '% %' => '%',
    // needs an argument: stays as it was written
    '50% off' => '50% off',
    '%2F' => '%2F',
    'a%sb' => 'a%sb',
    '%s%s%s%s%s%s%s%s' => '%s%s%s%s%s%s%s%s',
    '%d %i %u %o %x %X' => '%d %i %u %o %x %X',
    '%c %f %F %e %E %g %G %H %k' => '%c %f %F %e %E %g %G %H %k',
    '%S %Z %p' => '%S %Z %p',
    '%n' => '%n',
    '%hhn%ln%jn' => '%hhn%ln%jn',
    '%ld %lld %zu %jd %td %Lf %hd' => '%ld %lld %zu %jd %td %Lf %hd',
    '%pd' => '%pd',
    '%*d' => '%*d',
    '%*y' => '%*y',
    '%.*y' => '%.*y',
    '%-08.3f' => '%-08.3f',
    '%%%s%%' => '%%s%',
    '% %s' => '%s',
    // looks like one of these, but stands behind a "%%"
    '%%%n' => '%%n',
];

foreach ($texts as $text => $formatted) {
    // What the formatter drops at the end of a message it does not drop before more text.
    if (!in_array($text, ['a%', 'a%-', 'a%l'], true)) {
        $cases["text $text"] = ["$text|{/dynamic}", [], null, "Unexpected closing dynamic tag in $formatted|{/dynamic}"];
        $cases["reference $text"] = ["{addslashes a::$text|:::}", [], null,
            "Bad formated parameter'a::$formatted|:::': too many : in {addslashes a::$formatted|:::}"];
    }
}
check_as_text($cases);

foreach ($texts as $text => $formatted) {
    $seen = outcome("nosuch $text", [], false);
    if ($seen !== [null, "Could not open file nosuch $formatted"]) {
        echo "nosuch $text: ", json_encode($seen), "\n";
    }
}

// An absurd width is no reason to write a gigabyte of blanks.
foreach (['%2000000000;', '%.2000000000;', '%99999999999999999999;', '%-2000000000%'] as $text) {
    $message = outcome("nosuch $text", [], false)[1];
    echo json_encode(str_starts_with($message, 'Could not open file nosuch ')), ' ', json_encode(strlen($message) < 1000), "\n";
}

// Data is no part of a message, and no part of the result is formatted.
echo json_encode(outcome('{v}%d%%{x::%s}', ['v' => '%s%n'])), "\n";
// The message ends at a NUL byte, as every text does that C code formats.
echo json_encode(outcome("a\0b{/dynamic}")), "\n";
?>
--EXPECT--
text: as expected
true true
true true
true true
true true
["%s%n%d%%{x::%s}"]
[null,"Unexpected closing dynamic tag in a"]

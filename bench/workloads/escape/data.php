<?php

declare(strict_types=1);

// One special byte in twenty, and text of several alphabets between them, but no apostrophe (see ../table/data.php).
return static function (int $count = 500): array {
    $words = ['a long text', 'of many', 'plain words,', 'mostly', 'clean; nur', 'ab und zu', 'größer', 'als', 'ein Byte', 'and then', 'goes on', 'без конца', 'again.'];
    $specials = ['<', '>', '&', '"'];
    $texts = [];
    for ($t = 0; $t < $count; $t++) {
        $text = '';
        for ($i = 0; \strlen($text) < 1150; $i++) {
            $text .= $words[($t + $i) % 13] . ' ' . ($i % 7 < 3 ? $specials[($t + $i) % 4] : '') . ' ';
        }
        $texts[] = $text;
    }
    return ['texts' => $texts];
};

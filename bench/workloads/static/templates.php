<?php

declare(strict_types=1);

use Bench\Notation;

/** 200 KB of text with a variable every ten KB. */
return static function (string $folder): void {
    $line = '<p>%04d. Lines of plain text, as long as those of a printed page, with a tag seldom in between.</p>';
    $text = '';
    for ($i = 1; $i <= 2040; $i++) {
        $text .= \sprintf($line, $i) . "\n" . ($i % 102 === 0 ? '<p>Here is {value' . $i / 102 . "}.</p>\n" : '');
    }
    Notation::write($folder, 'template', $text);
};

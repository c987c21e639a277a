<?php

declare(strict_types=1);

use Bench\Chance;

$line = '<p>%04d. Lines of plain text, as long as those of a printed page, with a tag seldom in between.</p>';
$text = '';
for ($i = 1; $i <= 2040; $i++) {
    $text .= \sprintf($line, $i) . "\n" . ($i % 102 === 0 ? '<p>Here is {value' . $i / 102 . "}.</p>\n" : '');
}

return [
    'template' => $text,
    'data' => static function (Chance $chance, int $size): array {
        $data = [];
        for ($i = 1; $i <= $size; $i++) {
            $data["value$i"] = $chance->text($chance->number(5, 40));
        }
        return $data;
    },
];

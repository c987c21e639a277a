<?php

declare(strict_types=1);

use Bench\Chance;

// Twelve files of some 400 bytes, each with two or three values of a page's.
$names = ['title', 'site', 'city', 'user', 'topic', 'author', 'date', 'phone', 'mail', 'offer', 'price', 'year'];
$chance = new Chance(0);
$files = ['template' => ''];
foreach ($names as $i => $name) {
    $files["part$i"] = "<section id=\"$name\">\n<h2>{escape $name} in {{$chance->of($names)}}.</h2>\n"
        . '<p>' . \wordwrap($chance->text(300), 100, "\n") . "</p>\n<p>By {escape {$chance->of($names)}}.</p>\n</section>\n";
    $files['template'] .= "{file part$i}";
}

return [
    'template' => $files,
    'data' => static function (Chance $chance) use ($names): array {
        $data = [];
        foreach ($names as $name) {
            $data[$name] = $chance->percent(50) ? $chance->name() : $chance->word();
        }
        return $data;
    },
];

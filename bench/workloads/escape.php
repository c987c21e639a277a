<?php

declare(strict_types=1);

use Bench\Chance;

return [
    'template' => <<<'HTML'
        <section>
        {each text texts}<p>{escape text}</p>
        {/each}</section>

        HTML,
    'data' => static function (Chance $chance, int $size): array {
        $texts = [];
        while (\count($texts) < $size) {
            $texts[] = $chance->text($chance->number(300, 2000), $chance->of(['plain', 'plain', 'western']), 5);
        }
        return ['texts' => $texts];
    },
];

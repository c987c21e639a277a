<?php

declare(strict_types=1);

use Bench\Chance;

return [
    'template' => <<<'HTML'
        <ul>
        {each person people}<li>{if person.mail}<a href="mailto:{person.mail}">{/if}{either person.nick person.name}{if person.mail}</a>{/if}, {escape person.city}{if person.phone}, call {person.phone}{/if}{each tag person.tags} <i>{escape tag}</i>{/each}{if person.note}<br>{escape person.note}{/if}</li>
        {/each}</ul>

        HTML,
    'data' => static function (Chance $chance, int $size): array {
        $people = [];
        while (\count($people) < $size) {
            $person = ['name' => $chance->name(), 'tags' => []];
            for ($count = $chance->number(0, 4); $count > 0; $count--) {
                $person['tags'][] = $chance->word();
            }
            $chance->percent(30) && $person['nick'] = $chance->word();
            $chance->percent(60) && $person['mail'] = $chance->word() . '@example.org';
            $chance->percent(40) && $person['phone'] = $chance->number(1_000_000, 99_999_999);
            $chance->percent(20) && $person['note'] = $chance->text($chance->number(10, 80), 'western', 3);
            $people[] = $person + ['city' => $chance->name()];
        }
        return ['people' => $people];
    },
];

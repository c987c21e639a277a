<?php

declare(strict_types=1);

use Bench\Chance;

return [
    'template' => <<<'HTML'
        <h1>{title}</h1>
        <table>
        {each row rows}<tr class="{row.state}"><td>{row.id}</td><td>{escape row.name}</td><td>{row.mail}</td><td>{escape row.note}</td><td class="amount">{row.amount}</td></tr>
        {/each}</table>

        HTML,
    'data' => static function (Chance $chance, int $size): array {
        $rows = [];
        for ($id = 10_000; \count($rows) < $size; $id += $chance->number(1, 9)) {
            $rows[] = [
                'id' => $id,
                'state' => $chance->of(['open', 'paid', 'late', 'sent']),
                'name' => $chance->name(),
                'mail' => $chance->word() . ".$id@example.org",
                'note' => $chance->text($chance->number(5, 40), 'plain', 2),
                'amount' => \number_format($chance->number(0, 200_000) / 100, 2),
            ];
        }
        return ['title' => 'Orders', 'rows' => $rows];
    },
];

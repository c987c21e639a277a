<?php
return [
    'hours' => [9 => '9:00', 10 => '10:00', 15 => '15:00'],
    'days' => [
        'Mon' => ['booked' => ['Ann', 'Bob'], 'note' => 'full'],
        'Tue' => ['closed' => true, 'booked' => []],
        'Wed' => ['booked' => ['Cid']],
        '' => ['closed' => 0, 'note' => 0],
        -1 => ['booked' => [1 => 'Dot'], 'note' => 1.5],
    ],
];

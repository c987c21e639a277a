<?php

declare(strict_types=1);

return static function (): array {
    $data = [];
    for ($i = 1; $i <= 20; $i++) {
        $data['value' . $i] = 'the value of number ' . $i;
    }
    return $data;
};

<?php
declare(strict_types=1);

require_once __DIR__ . '/../../../cli/autoload.php';

/** The data as the command line reads it; no text is no data. @throws JsonException */
function read_data(string $json): array
{
    return TemplateCli\Json::data(trim($json) === '' ? '{}' : $json);
}

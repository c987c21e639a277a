<?php

declare(strict_types=1);

require __DIR__ . '/../../cli/autoload.php';
require __DIR__ . '/CliTestCase.php';

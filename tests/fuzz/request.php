<?php
// One request of a fuzz target, which sets $input and $target.
require __DIR__ . '/harness.php';
play($input, $target);

<?php
// One request of a fuzz target, which sets $input and $target.
require __DIR__ . ($target === 'limits' ? '/limits.php' : '/harness.php');
play($input, $target);

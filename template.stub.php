<?php

/** @generate-class-entries */

function template(string $fileName, array $userData, bool $string_mode = false): ?string {}

<?php

// Each of these files is a whole request, as an application would write it. What the request is about comes with it:
// DATA is a file with the data, TEMPLATE a file (or, with AS_STRING, the text itself).

$data = require $_SERVER['DATA'];
echo template($_SERVER['TEMPLATE'], $data, $_SERVER['AS_STRING'] === '1');

<?php

$data = require $_SERVER['DATA'];
ob_start();
include $_SERVER['TEMPLATE'];
echo ob_get_clean();

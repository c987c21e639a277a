<?php

require '/usr/share/php/Twig/autoload.php';

$data = require $_SERVER['DATA'];
$twig = new Twig\Environment(new Twig\Loader\FilesystemLoader(explode(':', $_SERVER['FOLDERS'])), [
    'cache' => $_SERVER['SCRATCH'] . '/twig',
    'auto_reload' => false,
    'autoescape' => false,
    'use_yield' => true,
]);
echo $_SERVER['AS_STRING'] === '1'
    ? $twig->createTemplate($_SERVER['TEMPLATE'])->render($data)
    : $twig->render($_SERVER['TEMPLATE'], $data);

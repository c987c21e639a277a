<?php

require '/usr/share/php/smarty4/Smarty.class.php';

$data = require $_SERVER['DATA'];
$smarty = new Smarty();
$smarty->setTemplateDir(explode(':', $_SERVER['FOLDERS']));
$smarty->setCompileDir($_SERVER['SCRATCH'] . '/smarty');
$smarty->setCompileCheck(Smarty::COMPILECHECK_OFF);
$smarty->assign($data);
echo $smarty->fetch($_SERVER['TEMPLATE']);

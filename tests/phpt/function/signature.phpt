--TEST--
One function with exactly this signature, in the module "template" 2.0.0
--EXTENSIONS--
template
--FILE--
<?php
$module = new ReflectionExtension('template');
echo json_encode([$module->getName(), $module->getVersion(), array_keys($module->getFunctions()),
    $module->getClassNames(), $module->getConstants(), $module->getINIEntries(), $module->getDependencies()]), "\n";

$function = new ReflectionFunction('template');
echo preg_replace('/\s+/', ' ', trim((string) $function)), "\n";
echo json_encode([$function->getNumberOfParameters(), $function->getNumberOfRequiredParameters(), $function->isDeprecated(),
    $function->returnsReference(), $function->isVariadic(), $function->hasTentativeReturnType()]), "\n";
?>
--EXPECT--
["template","2.0.0",["template"],[],[],[],[]]
Function [ <internal:template> function template ] { - Parameters [3] { Parameter #0 [ <required> string $fileName ] Parameter #1 [ <required> array $userData ] Parameter #2 [ <optional> bool $string_mode = false ] } - Return [ ?string ] }
[3,2,false,false,false,false]

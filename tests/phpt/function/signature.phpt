--TEST--
One function in the module "template" 2.0.0, with exactly the signature that the stub declares
--FILE--
<?php
$module = new ReflectionExtension('template');
echo json_encode([$module->getName(), $module->getVersion(), array_keys($module->getFunctions()),
    $module->getClassNames(), $module->getConstants(), $module->getINIEntries(), $module->getDependencies()]), "\n";

$function = new ReflectionFunction('template');
echo preg_replace('/\s+/', ' ', trim((string) $function)), "\n";

// Declared once more, as the stub has it, it has the same signature.
eval('namespace Stub;' . substr(file_get_contents(dirname(__DIR__, 3) . '/template.stub.php'), strlen('<?php')));
$signature = fn (ReflectionFunction $function) => strstr((string) $function, '- Parameters');
var_dump($signature(new ReflectionFunction('Stub\template')) === $signature($function));
--EXPECT--
["template","2.0.0",["template"],[],[],[],[]]
Function [ <internal:template> function template ] { - Parameters [3] { Parameter #0 [ <required> string $fileName ] Parameter #1 [ <required> array $userData ] Parameter #2 [ <optional> bool $string_mode = false ] } - Return [ ?string ] }
bool(true)

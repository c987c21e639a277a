--TEST--
The stub, the argument information and the loaded function say the same
--EXTENSIONS--
template
--FILE--
<?php
$root = dirname(__DIR__, 3);
$stub = file_get_contents("$root/template.stub.php");
$arginfo = file_get_contents(current(array_filter(["$root/module/template_arginfo.h", "$root/template_arginfo.h"], 'is_file')));

// The information was generated from this very stub.
preg_match('/Stub hash: (\w+)/', $arginfo, $hash);
echo json_encode($hash[1] === sha1(str_replace("\r\n", "\n", $stub))), "\n";

// The stub declares what is loaded.
$code = preg_replace('~/\*.*?\*/|//[^\n]*|#[^\n]*~s', '', $stub);
preg_match_all('/function (\w+\(.*?\): \S+)\s*\{\s*\}/', $code, $declared);
$loaded = [];
foreach ((new ReflectionExtension('template'))->getFunctions() as $function) {
    $parameters = [];
    foreach ($function->getParameters() as $parameter) {
        $parameters[] = $parameter->getType() . ' $' . $parameter->getName()
            . ($parameter->isOptional() ? ' = ' . var_export($parameter->getDefaultValue(), true) : '');
    }
    $loaded[] = $function->getName() . '(' . implode(', ', $parameters) . '): ' . $function->getReturnType();
}
echo json_encode($declared[1] === $loaded), "\n";
echo implode("\n", $loaded), "\n";
?>
--EXPECT--
true
true
template(string $fileName, array $userData, bool $string_mode = false): ?string

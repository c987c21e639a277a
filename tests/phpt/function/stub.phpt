--TEST--
The stub declares exactly what is loaded
--EXTENSIONS--
template
--FILE--
<?php
$stub = file_get_contents(dirname(__DIR__, 3) . '/template.stub.php');
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
template(string $fileName, array $userData, bool $string_mode = false): ?string

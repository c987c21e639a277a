<?php
// Reads the stub's comment with PHPStan's own parser, and compares what it says with the function
// that is loaded: what an editor or analyser takes from the stub must be true.

require 'PHPStan/PhpDocParser/autoload.php';

use PHPStan\PhpDocParser\Ast\Type\TypeNode;
use PHPStan\PhpDocParser\Lexer\Lexer;
use PHPStan\PhpDocParser\Parser\{ConstExprParser, PhpDocParser, TokenIterator, TypeParser};
use PHPStan\PhpDocParser\ParserConfig;

$stub = file_get_contents(dirname(__DIR__, 2) . '/template.stub.php');
preg_match('~(/\*\*(?:(?!\*/).)*\*/)\s*function template\(~s', $stub, $match)
    || throw new Exception('The function has no comment in the stub.');

$config = new ParserConfig([]);
$expressions = new ConstExprParser($config);
$parser = new PhpDocParser($config, new TypeParser($config, $expressions), $expressions);
$comment = $parser->parse(new TokenIterator(new Lexer($config)->tokenize($match[1])));

$wrong = [];
foreach ($comment->getTags() as $tag) {
    if ($tag->value instanceof PHPStan\PhpDocParser\Ast\PhpDoc\InvalidTagValueNode) {
        $wrong[] = "$tag->name cannot be read: {$tag->value->exception->getMessage()}";
    }
}

/** The native type that a documented one stands for. */
function native(TypeNode $type): string
{
    return preg_replace(['/^\w+\[\]$/', '/^(\w+) \| null$/'], ['array', '?$1'], trim((string) $type, '()'));
}

$function = new ReflectionFunction('template');
$documented = [];
foreach ($comment->getParamTagValues() as $parameter) {
    $documented[] = native($parameter->type) . ' ' . $parameter->parameterName;
}
$loaded = array_map(fn($parameter) => "{$parameter->getType()} \${$parameter->getName()}", $function->getParameters());
if ($documented !== $loaded) {
    $wrong[] = 'parameters: ' . implode(', ', $documented) . ' are not ' . implode(', ', $loaded);
}
$returned = array_map(fn($value) => native($value->type), $comment->getReturnTagValues());
if ($returned !== [(string) $function->getReturnType()]) {
    $wrong[] = 'result: ' . implode(', ', $returned) . " is not {$function->getReturnType()}";
}

echo $wrong ? implode("\n", $wrong) : 'the stub says to analysers what the function is', "\n";
exit($wrong ? 1 : 0);

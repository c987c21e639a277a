--TEST--
Objects repeated through "num": properties of every kind, read as their values
--FILE--
<?php
require __DIR__ . '/../helper.inc';

#[AllowDynamicProperties]
class Point
{
    public $x = 1;
    protected $y = 'hidden?';
    private $z = ['z'];
    public ?string $never = null;
    public int $unset;
    public static $static = 'no property';
    public function __construct(public readonly string $label = 'L')
    {
    }
}
class Holder extends ArrayObject
{
    public $own = 'own property';
}
$point = new Point();
$point->added = 'dynamic';
$linked = new stdClass();
$value = 'linked value';
$linked->reference = &$value;
$unset = new Point();
unset($unset->x);

$objects = ['point' => $point, 'unset' => $unset, 'empty' => new stdClass(), 'linked' => $linked,
    'array object' => new Holder(['stored']), 'interval' => new DateInterval('P1DT2H'), 'closure' => fn () => 1];

foreach ($objects as $name => $object) {
    $seen = outcome('{dynamic r,rows}{dynamic i,*::c}{[*]}={optional [*] x}(x){/optional}{i::* \'none\'}{*::0};{/dynamic}{/dynamic}',
        ['rows' => [['c' => ['num' => $object]]]]);
    echo $name, ': ', json_encode($seen), "\n";
}
// Reading the properties leaves them as they were.
echo json_encode([$point, $unset->label, $value]), "\n";
try {
    $point->label = 'changed';
} catch (Error $error) {
    echo $error->getMessage(), "\n";
}
$point->x++;
echo $point->x, "\n";
--EXPECT--
point: ["x=(x)1;=hidden?;=Array;never=;unset=none;label=L;added=dynamic;","Array to string conversion"]
unset: ["x=(x)none;=hidden?;=Array;never=;unset=none;label=L;","Array to string conversion"]
empty: [""]
linked: ["reference=linked value;"]
array object: ["own=own property;"]
interval: ["y=0;m=0;d=1;h=2;i=0;s=0;f=0;invert=0;days=;from_string=;"]
closure: [""]
[{"x":1,"never":null,"label":"L","added":"dynamic"},"L","linked value"]
Cannot modify readonly property Point::$label
2

--TEST--
User code that changes, through references, the data that is being rendered
--EXTENSIONS--
template
--FILE--
<?php
require __DIR__ . '/../helper.inc';

class Doing
{
    public function __construct(private Closure $what)
    {
    }
    public function __toString(): string
    {
        ($this->what)();
        return '!';
    }
}

/** One place that a reference makes shared, and what is done to it in the middle of the call. */
function changing(string $template, mixed $value, Closure $change): void
{
    $shared = $value;
    $changed = 0;
    $do = new Doing(function () use (&$shared, $change, &$changed) {
        if ($changed++ === 0) {
            $change($shared);
        }
    });
    $data = ['shared' => &$shared, 'do' => $do, 'rows' => [['do' => $do, 'shared' => &$shared]]];
    if (is_array($shared)) {
        $shared[] = $do;
        $shared[] = 'after';
    }
    echo json_encode(outcome($template, $data)), "\n";
}

$list = ['k' => 'before'];
// An array that is being iterated is held as it was.
changing('{dynamic r,shared}{r::[*]}={r::*};{/dynamic}', $list, function (&$array) { $array = []; });
changing('{dynamic r,shared}{r::[*]}={r::*};{/dynamic}', $list, function (&$array) { $array = null; });
changing('{dynamic r,shared}{r::[*]}={r::*};{/dynamic}', $list, function (&$array) { $array = 'text'; });
changing('{rdynamic r,shared}{r::[*]}={r::*};{/rdynamic}', $list, function (&$array) { $array = range(1, 1000); });
changing('{dynamic r,shared}{r::*}{dynamic shared}{*}{/dynamic};{/dynamic}', $list, function (&$array) { $array = str_repeat('x', 100); });

// A value fixed at analysis whose type has changed renders nothing; the text goes on.
changing('a{do}{dynamic r,shared}{r::*}{/dynamic}b', $list, function (&$array) { $array = 'text'; });
changing('a{dynamic r,shared}no{/dynamic}{do}{dynamic r,shared}{r::*}{/dynamic}b', [], function (&$array) { $array = 5; });
changing('a{dynamic rows}{*::do}{dynamic r,shared}{r::*}{/dynamic}{/dynamic}b', $list, function (&$array) { $array = new ArrayObject(['object']); });
changing('a{dynamic rows}{*::do}{dynamic r,shared}{r::*}{/dynamic}{/dynamic}b', $list, function (&$array) { $array = 1.5; });

// A value that was destroyed and made anew is read again.
changing('{shared}{do}{shared}', str_repeat('old', 10), function (&$text) { $text = str_repeat('new', 10); });
changing('{dynamic rows}{*::shared}{*::do}{*::shared}{htmlspecialchars *::shared}{/dynamic}', str_repeat('old', 3), function (&$text) { $text = str_repeat('<n>', 3); });
changing('{dynamic rows}{*::do}{optional *::shared}shown{/optional}{!optional *::shared}hidden{/optional}{/dynamic}', ['x'], function (&$array) { $array = 0; });

// An object that is being iterated: what is visited when its properties come and go is its own
// affair, but the call ends well.
function walking(object $object, Closure $change): void
{
    foreach (['dynamic', 'rdynamic'] as $section) {
        $walked = clone $object;
        $calls = 0;
        $walked->do = new Doing(function () use ($walked, $change, &$calls) {
            $change($walked, ++$calls);
        });
        $seen = outcome("{dynamic rows}{{$section} r,*::c}{r::[*]}={r::*};{/$section}{/dynamic}", ['rows' => [['c' => ['num' => $walked]]]]);
        echo json_encode([is_string($seen[0]), count($seen), $calls > 0]), "\n";
    }
}

#[AllowDynamicProperties]
class Declared
{
    public $first = 'one';
    public ?object $do = null;
    public $last = 'last';
}
$plain = (object) ['first' => 1, 'second' => 2, 'third' => 3];
walking($plain, function ($object) { unset($object->second); });
walking($plain, function ($object) { unset($object->first, $object->second, $object->third, $object->do); });
walking($plain, function ($object, $calls) { for ($i = 0; $calls === 1 && $i < 100; $i++) { $object->{"added$i"} = $i; } });
walking(new Declared(), function ($object) { unset($object->do, $object->last); $object->first = null; });
walking(new Declared(), function ($object) { $object->added = str_repeat('added', 100); $object->last = new ArrayObject(); unset($object->last); });
echo "alive\n";

// What holds itself is not freed at the end of a script: it would be taken for a leak.
gc_collect_cycles();
?>
--EXPECT--
["k=before;0=!;1=after;"]
["k=before;0=!;1=after;"]
["k=before;0=!;1=after;"]
["1=after;0=!;k=before;"]
["beforebefore!after;!;after;"]
["a!b"]
["a!b"]
["a!b"]
["a!b"]
["oldoldoldoldoldoldoldoldoldold!newnewnewnewnewnewnewnewnewnew"]
["oldoldold!<n><n><n>&lt;n&gt;&lt;n&gt;&lt;n&gt;"]
["!hidden"]
[true,1,true]
[true,1,true]
[true,1,true]
[true,1,true]
[true,1,true]
[true,1,true]
[true,1,true]
[true,1,true]
[true,1,true]
[true,1,true]
alive

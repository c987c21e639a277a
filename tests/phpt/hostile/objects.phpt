--TEST--
Objects that change, or lose what is behind them, while their properties are iterated
--FILE--
<?php
require __DIR__ . '/../helper.inc';

#[AllowDynamicProperties]
class Page
{
    public $title = 'old';
    public $do = null;
    public $last = 'last';
}
function walk(object $object): array
{
    return outcome('{dynamic rows}{dynamic *::c}{[*]}={*};{/dynamic}{/dynamic}', ['rows' => [['c' => ['num' => $object]]]]);
}

// An object that gets a property meanwhile stays one object: what is written later shows everywhere.
$page = new Page();
$page->do = new Doing(function () use ($page) {
    $page->added = 'added';
});
echo json_encode(walk($page)), "\n";
$page->do = null;
$page->title = 'new';
echo json_encode([$page, get_object_vars($page), (array) $page]), "\n";

// What is iterated is the object as it was.
$page->do = new Doing(function () use ($page) {
    $page->last = 'too late';
    unset($page->added, $page->title);
});
echo json_encode(walk($page)), json_encode(get_object_vars($page)), "\n";

// Lazy objects: made when they are iterated, with what that does.
$class = new ReflectionClass(Page::class);
$ghost = fn (Closure $make) => $class->newLazyGhost($make);
$proxy = fn (Closure $make) => $class->newLazyProxy($make);
echo json_encode(walk($ghost(function (Page $page) { $page->title = 'ghost'; }))), "\n";
echo json_encode(walk($proxy(function () { $page = new Page(); $page->title = 'real'; return $page; }))), "\n";
echo json_encode(walk($ghost(fn () => throw new LogicException('no ghost')))), "\n";
echo json_encode(walk($proxy(fn () => throw new LogicException('no proxy')))), "\n";
echo json_encode(outcome('{dynamic rows}[{*::0}{*::title}]{/dynamic}', ['rows' => [$proxy(fn () => throw new LogicException('no index'))]])), "\n";

// A proxy whose real object goes away in the middle.
$lazy = $proxy(function () use (&$lazy, $class) {
    $page = new Page();
    $page->last = str_repeat('last', 5);
    $page->do = new Doing(function () use (&$lazy, $class) {
        $class->resetAsLazyProxy($lazy, fn () => new Page());
        array_map(fn () => new Page(), range(1, 20));
    });
    return $page;
});
echo json_encode(walk($lazy)), "\n";

// The last reference to the object goes away in the middle.
$held = new Page();
$held->do = new Doing(function () use (&$held, &$rows) {
    $held = $rows = null;
});
$rows = [['c' => ['num' => &$held]], ['c' => ['num' => $held]]];
echo json_encode(outcome('{dynamic rows}{dynamic *::c}{[*]}={*};{/dynamic}{/dynamic}', ['rows' => &$rows])), "\n";

// A key that goes away between two elements, and another in its place.
$changing = (object) ['row' => [strrev('1yek') => 'first']];
$change = new Doing(function () use ($changing) {
    $changing->row = null;
    $changing->row = [strrev('2yek') => 'wrong'];
});
$element = ['object' => ['num' => $changing], 'change' => $change];
echo json_encode(outcome('{dynamic r,l}{dynamic p,r::*::object}{p::*::key1}{/dynamic}{r::*::change}{/dynamic}', ['l' => [$element, $element]])), "\n";

// What holds itself is not freed at the end of a script: it would be taken for a leak.
unset($page, $lazy, $held, $rows, $changing, $change, $element);
gc_collect_cycles();
--EXPECT--
["title=old;do=!;last=last;"]
[{"title":"new","do":null,"last":"last","added":"added"},{"title":"new","do":null,"last":"last","added":"added"},{"title":"new","do":null,"last":"last","added":"added"}]
["title=new;do=!;last=last;added=added;"]{"do":{},"last":"too late"}
["title=ghost;do=;last=last;"]
["title=real;do=;last=last;"]
["LogicException: no ghost"]
["LogicException: no proxy"]
["LogicException: no index"]
["title=old;do=!;last=lastlastlastlastlast;"]
["title=old;do=!;last=last;"]
["first!!"]

--TEST--
Fibers that suspend in the middle of a call, with another call in between, and that are never resumed
--FILE--
<?php
require __DIR__ . '/../helper.inc';

$suspends = fn (string $name) => new Doing(fn () => $name . Fiber::suspend($name));
$fiber = fn (string $name) => new Fiber(fn () => template('{v}{dynamic r,rows}[{r::[*]}{r::*}{v}]{/dynamic}',
    ['v' => $name, 'rows' => [$suspends("$name-0"), 'plain', $suspends("$name-2")]], true));

// Two calls, each suspended twice, in turns.
[$a, $b] = [$fiber('a'), $fiber('b')];
echo $a->start(), ' ', $b->start(), ' ';
echo template('between', [], true), ' ';
echo $a->resume('!'), ' ', $b->resume('?'), "\n";
$b->resume('?');
$a->resume('!');
echo $a->getReturn(), "\n", $b->getReturn(), "\n";

// An exception is thrown into the call where it is suspended.
$c = $fiber('c');
$c->start();
try {
    $c->throw(new LogicException('into the call'));
} catch (LogicException $exception) {
    echo $exception->getMessage(), "\n";
}

// Suspended for good: the call is unwound when its fiber is destroyed.
$d = $fiber('d');
$d->start();
unset($d);
$analysis = new Fiber(fn () => template('{optional v}{v}', ['v' => $suspends('e')], true));
$analysis->start();
unset($analysis);
gc_collect_cycles();
echo template('{v}', ['v' => 'after'], true), "\n";

// And one that is suspended when the script ends.
$last = $fiber('last');
$last->start();
--EXPECT--
a-0 b-0 between a-2 b-2
a[0a-0!a][1plaina][2a-2!a]
b[0b-0?b][1plainb][2b-2?b]
into the call
after

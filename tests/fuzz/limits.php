<?php
/**
 * What the target "limits" does with an input: each byte chooses what there is of one thing in a call
 * (tests/limits/Shape.php), which must keep to the limits of memory and time.
 */
require __DIR__ . '/../limits/Call.php';
require __DIR__ . '/../limits/measure.php';

/** In kB, beside the limit of memory and what the process held before. */
const ROOM = 24 * 1024;
const MOST_TIME = 1500;
const MOST_BYTES = 4 << 20;

function play(string $input): void
{
    ini_set('memory_limit', '16M');
    set_error_handler(Again::handle(...));
    $before = resident('VmRSS');
    $shape = shape($input);
    $call = new Call($shape);
    register_shutdown_function(function () use ($shape, $before) {
        $seen = measured();
        ini_set('memory_limit', '-1');
        set_error_handler(null);
        $next = template('{a}{dynamic r,b}{htmlspecialchars r::*}{/dynamic}', ['a' => 'in ', 'b' => ['<order']], true);
        if ($seen['resident'] - $before > ROOM + (16 << 10) || $seen['processor'] > MOST_TIME || $next !== 'in &lt;order') {
            file_put_contents('php://stderr', $shape->name() . ': ' . json_encode([$before, $seen, $next]) . "\n");
            abort();
        }
    });
    measured();
    set_time_limit(1);
    try {
        $call->make();
    } catch (Error) {
        // PHP's own, of the stack
    }
}

function shape(string $input): Shape
{
    $at = 0;
    $choose = function (int $below) use ($input, &$at): int {
        return ord($input[$at++] ?? "\0") % $below;
    };
    $sizes = [];
    for ($number = 1 + $choose(3); $number > 0; $number--) {
        $size = array_keys(Shape::SIZES)[$choose(count(Shape::SIZES))];
        $sizes[$size] = max(2, Shape::SIZES[$size] >> $choose(24));
    }
    return Shape::chosen($choose, $sizes, MOST_BYTES);
}

<?php

declare(strict_types=1);

return static fn (): array => [
    'language' => 'en',
    'title' => 'Making ochre & umber at home',
    'description' => 'From a handful of clay to a jar of paint: what to dig, how to wash it, and when to stop',
    'author' => 'Maria "Mia" Rossi',
    'site' => 'The Pigment Shop',
    'root' => 'https://shop.example',
    'published' => '14 March 2026',
    'minutes' => 6,
    'category' => 'Workshop',
    'lead' => 'Earth colours are the oldest paints that we know. They are cheap, they keep for thousands of years, and the best of them may lie under your own garden. All that you need is a spade, two buckets & a fine sieve.',
    'body' => 'Take the earth from below the roots, where it shows its colour: yellow, red or a warm brown. Stir it into plenty of water, wait for as long as it takes to count to twenty, and pour the cloudy water off into the second bucket; sand & stones stay behind. Let the second bucket stand until the water is clear, which takes a night or two, and pour the water away. What remains is your pigment. Dry it on a plate, grind it, and pass it through the sieve. If the colour is dull, roast a spoonful of it in an old pan: yellow ochre turns red at a little more than 250 degrees, umber becomes "burnt umber". To make paint of it, heap two spoonfuls on a slab of glass, make a hollow in the middle, and pour in linseed oil drop by drop. Work it with a palette knife until it is as stiff as cold butter, then with the muller in figures of eight, for twenty minutes or more. It is ready when nothing grates any longer & the surface shines; more oil makes it easier to grind, but yellow & slow to dry.',
    'tip' => 'Never grind dry earth without a mask: dust < 10 micrometres stays in the lungs.',
    'related' => [
        ['url' => '/oil', 'title' => 'Linseed, walnut & poppy: which oil for which pigment?'],
        ['url' => '/egg', 'title' => 'Egg tempera in ten minutes'],
        ['url' => '/wash', 'title' => 'Washing lake pigments & inks'],
        ['url' => '/mull', 'title' => 'How to hold a "muller"'],
        ['url' => '/keep', 'title' => 'Keeping paint for > 5 years'],
    ],
    'member' => true,
    'draft' => false,
    'comments' => 12,
    'year' => 2026,
    'mail' => 'workshop@shop.example',
];

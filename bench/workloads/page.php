<?php

declare(strict_types=1);

use Bench\Chance;

return [
    'template' => <<<'HTML'
        <!DOCTYPE html>
        <html lang="{language}">
        <head>
        <meta charset="utf-8">
        <title>{escape title} - {site}</title>
        <meta name="description" content="{escape description}">
        <meta name="author" content="{escape author}">
        <meta name="viewport" content="width=device-width, initial-scale=1">
        <link rel="canonical" href="{root}/workshop">
        <link rel="stylesheet" href="/style.css">
        <style>
        body { margin: 0 auto; max-width: 44rem; font: 18px/1.5 Georgia, serif; color: #222; }
        header, footer { padding: 1rem 0; border: solid #ccc; border-width: 0 0 1px; }
        footer { border-width: 1px 0 0; font-size: smaller; color: #666; }
        nav ul { display: flex; gap: 1.5rem; margin: 0; padding: 0; list-style: none; }
        h1 { font-size: 2rem; line-height: 1.2; margin: 2rem 0 .5rem; }
        .lead { font-size: larger; color: #555; }
        .tip { padding: .75rem 1rem; background: #fff6dd; border-left: 4px solid #e0a800; }
        .related { margin: 2rem 0; padding: 0 0 0 1.25rem; }
        .related li { margin: .25rem 0; }
        article p { hyphens: auto; text-align: justify; }
        article h2 { margin: 2rem 0 .5rem; font-size: 1.3rem; font-weight: normal; }
        aside { margin: 3rem 0 1rem; padding: 1rem 0 0; border-top: 1px solid #ccc; }
        a { color: #7a3b00; text-decoration: none; border-bottom: 1px solid currentColor; }
        @media print { header, footer, aside { display: none; } }
        .draft { padding: .25rem .5rem; background: #a00; color: #fff; text-transform: uppercase; }
        </style>
        </head>
        <body>
        <header>
        <nav>
        <ul>
        <li><a href="/">Home</a></li>
        <li><a href="/pigments">Pigments</a></li>
        <li><a href="/binders">Oils and binders</a></li>
        <li><a href="/tools">Brushes and tools</a></li>
        <li><a href="/workshop">Workshop</a></li>
        </ul>
        </nav>
        {if member}<p>Welcome back. <a href="/account">Your account</a> and <a href="/orders">your orders</a> are a click away.</p>
        {/if}</header>
        <main>
        <article>
        {if draft}<p class="draft">This text is a draft</p>
        {/if}<h1>{escape title}</h1>
        <p>{category}, published on {published} by {escape author}, {minutes} minutes to read</p>
        <p class="lead">{escape lead}</p>
        <p>{escape body}</p>
        <h2>Before you begin</h2>
        <p class="tip">{escape tip}</p>
        <p>Pigments that you dig yourself are never quite the same twice. Write down the place, the
        date and the weather, keep a small jar of every batch, and paint a sample card: in a year you
        will be glad of it. If a colour fades on a window sill within three months, it is not an earth.</p>
        <h2>What you need</h2>
        <ul>
        <li>A spade, and leave to use it where you dig</li>
        <li>Two buckets, one of them with a lip that pours well</li>
        <li>A sieve with a mesh of 0.1 millimetres or less, and a second, coarse one for roots and stones</li>
        <li>A glass muller and a slab; the bottom of a heavy bottle and a floor tile will do for the first time</li>
        <li>Jars with lids, labels that stick, and a pencil that does not fade</li>
        </ul>
        <h2>How long it keeps</h2>
        <p>Dry pigment keeps for ever as long as it stays dry. Once it is ground in oil, press it into a
        tube or cover it with water in a jar, and use it within the year. Egg tempera is for the day;
        what is left over in the evening goes into the compost, where it came from.</p>
        </article>
        <aside>
        <h2>Read on</h2>
        <ul class="related">
        {each link related}<li><a href="{link.url}">{escape link.title}</a></li>
        {/each}</ul>
        {unequal comments 0}<p><a href="#comments">{comments} comments</a> so far; yours is welcome.</p>
        {/if}</aside>
        </main>
        <footer>
        <p>{site}, Harbour Street 12. Write to <a href="mailto:{mail}">{mail}</a>.
        We answer within two working days, and we never hand your address to anybody else.</p>
        <p>Copyright {year} {site}. All rights reserved. <a href="/terms">Terms of sale</a>,
        <a href="/privacy">privacy</a>, <a href="/imprint">imprint</a></p>
        </footer>
        </body>
        </html>

        HTML,
    'data' => static function (Chance $chance, int $size): array {
        $related = [];
        while (\count($related) < $size) {
            $related[] = ['url' => '/' . $chance->word(), 'title' => $chance->text($chance->number(15, 50), 'plain', 2)];
        }
        return [
            'language' => $chance->of(['en', 'de', 'fr']),
            'title' => $chance->name(),
            'description' => $chance->text(80, 'plain', 1),
            'author' => $chance->name(),
            'site' => 'The Pigment Shop',
            'root' => 'https://shop.example',
            'published' => $chance->number(1, 31) . ' March 2026',
            'minutes' => $chance->number(1, 20),
            'category' => $chance->word(),
            'lead' => $chance->text(200, 'plain', 1),
            'body' => $chance->text(1000, 'plain', 1),
            'tip' => $chance->text(80, 'plain', 1),
            'related' => $related,
            'member' => $chance->percent(50),
            'draft' => $chance->percent(50),
            'comments' => $chance->number(0, 3),
            'year' => 2026,
            'mail' => 'workshop@shop.example',
        ];
    },
];

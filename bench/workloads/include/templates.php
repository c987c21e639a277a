<?php

declare(strict_types=1);

use Bench\Notation;

/** A page that is put together from twelve files of about 400 bytes. */
return static function (string $folder): void {
    $parts = [
        'head' => <<<'HTML'
            <!DOCTYPE html>
            <html lang="en">
            <head>
            <meta charset="utf-8">
            <title>{escape title} - {escape site}</title>
            <meta name="viewport" content="width=device-width, initial-scale=1">
            <meta name="description" content="How to dig, wash, dry and roast the earth colours of your own garden">
            <link rel="stylesheet" href="/style.css">
            <link rel="stylesheet" href="/print.css" media="print">
            <link rel="icon" href="/icon.svg">
            </head>

            HTML,
        'top' => <<<'HTML'
            <body class="two-columns">
            <header>
            <a class="logo" href="/"><img src="/logo.svg" alt="" width="240" height="60"></a>
            <p class="claim">{escape site} in {escape city}: colours, binders and brushes since 1962, and everything that
            you want to know about them</p>
            <p class="contact">Call us on working days between nine and five, or come by and look: we have an open
            jar of every colour on the counter, and paper to try it on</p>
            </header>

            HTML,
        'menu' => <<<'HTML'
            <nav>
            <ul>
            <li><a href="/pigments">Pigments</a></li>
            <li><a href="/binders">Oils and binders</a></li>
            <li><a href="/brushes">Brushes and tools</a></li>
            <li><a href="/papers">Papers and panels</a></li>
            <li><a href="/books">Books</a></li>
            <li><a href="/workshop" class="here">{escape topic}</a></li>
            <li><a href="/contact">Contact</a></li>
            </ul>
            </nav>

            HTML,
        'account' => <<<'HTML'
            <section class="account">
            <h2>Your account</h2>
            <p>You are logged in as {escape user}. You can change your address and your password, follow your parcels,
            and order again what you have bought before. As a member you get everything five per cent cheaper, and
            you hear of new colours a week before they are in the shop.</p>
            <p><a href="/account">Settings</a>, <a href="/orders">orders</a>, <a href="/logout">log out</a></p>
            </section>

            HTML,
        'search' => <<<'HTML'
            <form action="/search" method="get" role="search">
            <label for="query">Search the pages of {escape site} for</label>
            <input id="query" name="query" type="search" minlength="3" maxlength="80">
            <select name="in"><option>everything</option><option>pigments</option><option>tools</option>
            <option>books</option><option>workshop</option></select>
            <p>Small and capital letters are the same; put a phrase into quotes.</p>
            <button type="submit">Search</button>
            </form>

            HTML,
        'trail' => <<<'HTML'
            <nav class="trail" aria-label="You are here">
            <a href="/">Home</a> / <a href="/workshop">{escape topic}</a> / <b>{escape title}</b>, written by {escape author} and
            published on {date} under a licence that lets you copy, change and hand on the text as long as you
            name its author
            </nav>

            HTML,
        'article' => <<<'HTML'
            <article>
            <h1>{escape title}</h1>
            <p>Earth colours are the oldest paints that we know. They are cheap, they keep for thousands of years,
            and the best of them may lie under your own garden. All that you need is a spade, two buckets and a
            fine sieve, some patience, and a dry place where nobody stumbles over a plate of mud for a week. Take the earth from
            below the roots, stir it into plenty of water, and pour the cloudy water off: sand stays behind.</p>
            </article>

            HTML,
        'offer' => <<<'HTML'
            <aside class="offer">
            <h2>The colour of the month</h2>
            <p>{escape offer}, one hundred grams for {escape price} as long as we have it. A cool, clear green that has been
            under every face painted in the south for five hundred years. It dries fast in oil and is as good
            as transparent in water. Most of what is sold under this name today is a mixture; ours comes out
            of the ground as it is.</p>
            </aside>

            HTML,
        'courses' => <<<'HTML'
            <aside class="courses">
            <h2>Courses in {escape city}</h2>
            <p>Once a month we grind, boil and mix for a whole day. Six people at most, and you take home what
            you have made. Materials and a warm meal at noon are part of the price. Courses are held in English
            and German; ask us for other languages.</p>
            </aside>

            HTML,
        'letter' => <<<'HTML'
            <section class="letter">
            <h2>News by mail</h2>
            <p>Four times a year we write about new colours and old recipes. Send an empty message to {escape mail}, and
            another one when you have had enough of it. We use your address for this letter only, and nobody
            else ever gets to see it.</p>
            </section>

            HTML,
        'contact' => <<<'HTML'
            <address>
            <p>{escape site}, Harbour Street 12, {escape city}</p>
            <p>Telephone {phone} on working days between nine and five, mail to {escape mail} at any time; we answer
            within two working days. The shop is open from Tuesday to Saturday, and there is room for three
            bicycles and one patient dog in front of it.</p>
            </address>

            HTML,
        'foot' => <<<'HTML'
            <footer>
            <p>Copyright {year} {escape site}. All rights reserved.</p>
            <p><a href="/terms">Terms of sale</a>, <a href="/shipping">shipping</a>, <a href="/returns">returns</a>,
            <a href="/privacy">privacy</a>, <a href="/imprint">imprint</a></p>
            <p>Printed on paper, this page is good for lighting a stove.</p>
            </footer>
            </body>
            </html>

            HTML,
    ];
    foreach ($parts as $name => $text) {
        Notation::write($folder, $name, $text);
    }
    $page = \array_map(static fn (string $name): string => '{file ' . $name . '}', \array_keys($parts));
    Notation::write($folder, 'template', \implode('', $page));
};

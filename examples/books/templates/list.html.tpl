<ul>
{dynamic book,books}<li><a href="/book/{rawurlencode book::*::id}">{htmlspecialchars book::*::title}</a>, {book::*::price 'out of print'}{optional book::*::cheap} <b>only!</b>{/optional}</li>
{/dynamic}</ul>

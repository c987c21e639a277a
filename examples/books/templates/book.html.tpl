{optional book::author}<p>by {htmlspecialchars book::author}</p>
{/optional}{dynamic paragraph,book::paragraphs}<p>{htmlspecialchars paragraph::*}</p>
{/dynamic}{optional book::tags}<p>Filed under {dynamic tag,book::tags}{!optional tag::[*] 0}, {/optional}{htmlspecialchars tag::*}{/dynamic}.</p>
{/optional}{optional book::price}<p>{htmlspecialchars book::price} – <a href="/order/{rawurlencode book::id}">order it</a></p>
{/optional}{!optional book::price}<p>Out of print.</p>
{/optional}

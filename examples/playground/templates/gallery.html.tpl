{include header.html.tpl}<h1>{htmlspecialchars title}</h1>
<p class="lead">The whole language in {count} examples. Each can be opened in the playground and changed.</p>
<nav class="chapters" aria-label="Chapters">
{dynamic chapter,chapters}<a href="#{chapter::*::slug}">{htmlspecialchars chapter::*::title}</a>
{/dynamic}</nav>
{dynamic chapter,chapters}
<section class="chapter" aria-labelledby="{chapter::*::slug}">
<h2 id="{chapter::*::slug}">{htmlspecialchars chapter::*::title}</h2>
{dynamic example,chapter::*::examples}{include example.html.tpl}{/dynamic}
</section>
{/dynamic}
{include footer.html.tpl}

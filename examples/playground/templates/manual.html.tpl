{include header.html.tpl}<article class="page_text">
{dynamic section,sections}<section id="{htmlspecialchars section::*::id}"><pre class="markdown">{htmlspecialchars section::*::text}</pre></section>
{/dynamic}</article>
{include footer.html.tpl}
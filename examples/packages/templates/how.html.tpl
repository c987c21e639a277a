{optional --}
A page about another page: the templates that made it, and its data. The braces of a tag that is to be read, and not to
act, come from the data: "piece::*::open" is one.
{/optional}{include header.html.tpl}
<h1>{htmlspecialchars title}</h1>
<p class="lead">The data is gathered in <code>src/pages.php</code>. One call of <code>template()</code> puts it into
<code>{htmlspecialchars call}</code>, which includes the other files, if there are any. Long lists and texts are cut here.</p>

<div class="columns">
<section aria-labelledby="templates_heading">
<h2 id="templates_heading">Templates</h2>
{dynamic file,files}<h3>{htmlspecialchars file::*::name}</h3>
<pre class="source">{dynamic piece,file::*::pieces}{htmlspecialchars piece::*::text}{optional piece::*::open}<span class="tag">{piece::*::open}<b>{piece::*::keyword}</b>{htmlspecialchars piece::*::rest}</span>{/optional}{/dynamic}</pre>
{/dynamic}</section>
<section aria-labelledby="data_heading">
<h2 id="data_heading">Data</h2>
<pre class="source">{htmlspecialchars data}</pre>
</section>
</div>
{include footer.html.tpl}

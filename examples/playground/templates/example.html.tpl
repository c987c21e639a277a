{optional --}An example of the gallery; gallery.html.tpl includes it in a section called "example".{/optional}
<article class="example" id="{example::*::slug}">
<header>
<h3>{htmlspecialchars example::*::title}</h3>
<a href="/?example={rawurlencode example::*::slug}" aria-label="Try it: {htmlspecialchars example::*::title}">Try it</a>
</header>
{optional example::*::about}<p>{example::*::about}</p>{/optional}
<div class="parts">
<div><h4>Template</h4><pre><code>{dynamic piece,example::*::pieces}{include piece.html.tpl}{/dynamic}</code></pre>
{optional example::*::data}<h4>Data</h4><pre><code>{htmlspecialchars example::*::data}</code></pre>{/optional}</div>
<div>{optional example::*::output}<h4>Result</h4><pre class="result"><code>{htmlspecialchars example::*::output}</code></pre>{/optional}
{optional example::*::warning}<h4>Warning</h4><pre class="warning"><code>{htmlspecialchars example::*::warning}</code></pre>{/optional}</div>
</div>
</article>

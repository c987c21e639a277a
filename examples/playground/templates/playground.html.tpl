{include header.html.tpl}<h1 class="hidden">{htmlspecialchars title}</h1>
<noscript><p class="lead">The editor needs JavaScript. The <a href="/gallery">gallery</a> does not.</p></noscript>
<form class="toolbar" id="toolbar">
<label for="example">Example</label>
<select id="example" autocomplete="off">
<option value="" id="own" hidden>Your own</option>
{dynamic chapter,chapters}<optgroup label="{htmlspecialchars chapter::*::title}">
{dynamic example,chapter::*::examples}<option value="{htmlspecialchars example::*::slug}"{optional example::*::selected} selected{/optional}>{htmlspecialchars example::*::title}</option>
{/dynamic}</optgroup>
{/dynamic}</select>
<p id="about" class="about">{about}</p>
<button type="button" id="reset" hidden>Reset</button>
<button type="button" id="copy">Copy link</button>
</form>
<div class="work">
<div class="inputs">
<section class="panel">
<header><label for="template">Template</label><span class="note"><kbd>Ctrl</kbd> <kbd>Enter</kbd> renders at once</span></header>
<div class="editor"><textarea id="template" spellcheck="false" autocomplete="off" autocapitalize="off" wrap="soft">
{htmlspecialchars template}</textarea></div>
</section>
<section class="panel small">
<header><label for="data">Data</label><span class="note">JSON</span></header>
<div class="editor"><textarea id="data" spellcheck="false" autocomplete="off" autocapitalize="off" wrap="soft">
{htmlspecialchars data}</textarea></div>
</section>
</div>
<section class="panel output" aria-labelledby="result_heading">
<header>
<h2 id="result_heading">Result</h2>
<span id="status" class="note" role="status"></span>
<fieldset class="views">
<legend class="hidden">Show the result as</legend>
<label><input type="radio" name="view" id="view_page" value="page" autocomplete="off"><span>Page</span></label>
<label><input type="radio" name="view" id="view_text" value="text" autocomplete="off" checked><span>Text</span></label>
</fieldset>
</header>
<ul id="complaints" class="complaints" aria-live="polite" hidden></ul>
<pre id="text" role="group" class="shown" tabindex="0" aria-label="The result as text"></pre>
<iframe id="page" class="shown" sandbox title="The result as a page" hidden></iframe>
<ul id="findings" class="complaints" aria-live="polite" aria-label="What the check of the data finds" hidden></ul>
</section>
</div>
<details class="files">
<summary>Files that a template here may include</summary>
<dl>
{dynamic file,files}<dt>{htmlspecialchars file::*::name}</dt>
<dd><pre><code>{dynamic piece,file::*::pieces}{include piece.html.tpl}{/dynamic}</code></pre></dd>
{/dynamic}</dl>
</details>
<script type="application/json" id="examples" data-editor="{editor}">{examples}</script>
{include footer.html.tpl}

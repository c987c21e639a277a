{optional --}
The page of a section. What is decided by the page itself ("about", "few", "largest", "previous") is settled while the
template is read; what is decided by a package is settled for each package.

"letters" is an array of lists, whose keys are the letters. A key is written as "letter::[*]", and the list under it,
the element itself, as "letter::*".
{/optional}{include header.html.tpl}
<nav class="trail" aria-label="You are here"><a href="{root}index.html">Sections</a> <span aria-hidden="true">›</span></nav>
<h1>{htmlspecialchars title}</h1>
{optional about}<p class="lead">{htmlspecialchars about}</p>
{/optional}
<ul class="figures">
<li><b>{total::packages}</b> packages</li>
<li><b>{total::size}</b> installed size</li>
<li><b>{total::share}</b> of this machine</li>
</ul>
{optional largest}
<div class="columns">
<section aria-labelledby="largest_heading">
<h2 id="largest_heading">Largest</h2>
<ol class="ranking">
{rdynamic package,largest}{include ranked.html.tpl}{/rdynamic}</ol>
</section>
<section aria-labelledby="smallest_heading">
<h2 id="smallest_heading">Smallest</h2>
<ol class="ranking">
{dynamic package,smallest}{include ranked.html.tpl}{/dynamic}</ol>
</section>
</div>
{/optional}
{!optional few}<nav class="letters" aria-label="Letters">
{dynamic letter,letters}<a href="#_{rawurlencode letter::[*]}">{htmlspecialchars letter::[*]}</a>
{/dynamic}</nav>
{/optional}
{dynamic letter,letters}<section class="letter"{!optional few} id="_{htmlspecialchars letter::[*]}"{/optional}>
<h2>{htmlspecialchars letter::[*]}</h2>
{dynamic package,letter::*}{include package.html.tpl}{/dynamic}</section>
{/dynamic}
<nav class="neighbours" aria-label="Neighbouring sections">
{optional previous}<a rel="prev" href="{rawurlencode previous::file}">← {htmlspecialchars previous::name}</a>
{/optional}{optional next}<a rel="next" href="{rawurlencode next::file}">{htmlspecialchars next::name} →</a>
{/optional}</nav>
{include footer.html.tpl}

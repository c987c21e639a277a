{optional --}
The first page: all sections, and who and what takes up most. Two rules keep it safe whatever the database holds:
- text from the database goes through an escaping tag, each time;
- a plain tag prints what it finds as it is, so it only prints what the script has made itself: numbers, and sizes.
{/optional}{include header.html.tpl}
<h1>Installed packages</h1>
<p class="lead">What is on this machine, section by section.</p>

<ul class="figures">
<li><b>{total::packages}</b> packages</li>
<li><b>{total::size}</b> installed size</li>
<li><b>{total::sections}</b> sections</li>
<li><b>{total::maintainers}</b> maintainers</li>
</ul>

<section aria-labelledby="sections_heading">
<h2 id="sections_heading">Sections</h2>
<table>
<thead>
<tr><th scope="col">Section</th><th scope="col" class="wide">About</th><th scope="col" class="number">Packages</th><th scope="col" class="number">Size</th><th scope="col" class="wide"><span class="hidden">Share</span></th></tr>
</thead>
<tbody>
{dynamic section,sections}<tr data-count="{section::*::count}" data-kib="{section::*::kib}">
<th scope="row"><a href="sections/{rawurlencode section::*::file}">{htmlspecialchars section::*::name}</a></th>
<td class="wide">{section::*::about '—'}</td>
<td class="number">{section::*::count}</td>
<td class="number">{section::*::size}</td>
<td class="wide"><span class="bar" style="--part: {section::*::bar}%"></span></td>
</tr>
{/dynamic}</tbody>
</table>
</section>

<div class="columns">
{optional largest}<section aria-labelledby="largest_heading">
<h2 id="largest_heading">Largest packages</h2>
<ol class="ranking">
{rdynamic package,largest}<li>
<a href="sections/{rawurlencode package::*::page}#{rawurlencode package::*::id}">{htmlspecialchars package::*::name}</a>
<span class="number">{package::*::size}</span>
<span class="bar" style="--part: {package::*::bar}%"></span>
</li>
{/rdynamic}</ol>
</section>
{/optional}
{optional champions}<section aria-labelledby="champions_heading">
<h2 id="champions_heading">Busiest maintainers</h2>
<ol class="ranking">
{dynamic maintainer,champions}<li>
<a href="mails/{rawurlencode maintainer::*::file}">{optional maintainer::*::name}{htmlspecialchars maintainer::*::name}{/optional}{!optional maintainer::*::name}{htmlspecialchars maintainer::*::address}{/optional}</a>
<span class="number">{maintainer::*::count}</span>
<span class="bar" style="--part: {maintainer::*::bar}%"></span>
</li>
{/dynamic}</ol>
</section>
{/optional}
</div>
{include footer.html.tpl}

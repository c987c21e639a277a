{optional --}
The entry of one package. It is included inside a section named "package" and starts its references from there.
Sections nest: "relations" holds a list for each kind of relation, in it groups that are all wanted, in each of them
alternatives of which one will do. Between two alternatives stands an "or": before each but the one with the key 0.
{/optional}<article class="package" id="{htmlspecialchars package::*::id}" data-kib="{package::*::kib}">
<h3><a href="#{rawurlencode package::*::id}">{htmlspecialchars package::*::name}</a>
<span class="version">{htmlspecialchars package::*::version}</span>{optional package::*::essential} <span class="badge">essential</span>{/optional}{!optional package::*::state 'installed'} <span class="badge">{htmlspecialchars package::*::state}</span>{/optional}</h3>
<p class="size"><span class="bar" style="--part: {package::*::bar}%"></span> {package::*::size 'no size'}</p>
<p class="summary">{htmlspecialchars package::*::summary}</p>
<details{optional few} open{/optional}>
<summary>Details<span class="hidden"> of {htmlspecialchars package::*::name}</span></summary>
{dynamic block,package::*::description}{optional block::*::kind 'text'}<p>{htmlspecialchars block::*::text}</p>
{/optional}{optional block::*::kind 'verbatim'}<pre>{htmlspecialchars block::*::text}</pre>
{/optional}{/dynamic}<dl class="facts">
{optional package::*::neededBy}<dt>Needed by</dt>
<dd>{package::*::neededBy} {optional package::*::neededBy 1}package{/optional}{!optional package::*::neededBy 1}packages{/optional}</dd>
{/optional}{dynamic relation,package::*::relations}<dt>{relation::[*]}</dt>
<dd><ul class="relations">
{dynamic group,relation::*}<li>{dynamic alternative,group::*}{!optional alternative::[*] 0} <i>or</i> {/optional}{optional alternative::*::entry}<a href="{rawurlencode alternative::*::entry::page}#{rawurlencode alternative::*::entry::id}">{htmlspecialchars alternative::*::name}</a>{/optional}{!optional alternative::*::entry}{htmlspecialchars alternative::*::name}{/optional}{optional alternative::*::version} <span class="version">{htmlspecialchars alternative::*::version}</span>{/optional}{/dynamic}</li>
{/dynamic}</ul></dd>
{/dynamic}{optional package::*::person}<dt>Maintainer</dt>
<dd>{optional package::*::person::address}<a href="mailto:{rawurlencode package::*::person::mailbox}@{rawurlencode package::*::person::host}?subject={rawurlencode package::*::name}">{optional package::*::person::name}{htmlspecialchars package::*::person::name}{/optional}{!optional package::*::person::name}{htmlspecialchars package::*::person::address}{/optional}</a>{/optional}{!optional package::*::person::address}{htmlspecialchars package::*::person::name}{/optional}</dd>
{/optional}{optional package::*::homepage}<dt>Homepage</dt>
<dd><a href="{htmlspecialchars package::*::homepage}">{htmlspecialchars package::*::homepage}</a></dd>
{/optional}{optional package::*::source}<dt>Source</dt>
<dd>{htmlspecialchars package::*::source}</dd>
{/optional}{optional package::*::architecture}<dt>Architecture</dt>
<dd>{htmlspecialchars package::*::architecture}</dd>
{/optional}{optional package::*::priority}<dt>Priority</dt>
<dd>{htmlspecialchars package::*::priority}</dd>
{/optional}</dl>
</details>
</article>

{optional --}
All maintainers, each with the mail that was rendered for them. An address is written in two halves, because "@" has to
stay as it is in a mailto link while everything around it is encoded.
{/optional}{include header.html.tpl}
<h1>Maintainers</h1>
<p class="lead">{total::maintainers} people and teams look after the packages on this machine.{optional maintainers} Each gets a
mail; <a href="how/mail.html">how the mails are made</a>.{/optional}</p>

<table>
<thead>
<tr><th scope="col">Maintainer</th><th scope="col" class="wide">Address</th><th scope="col" class="number">Packages</th><th scope="col" class="number wide">Size</th><th scope="col">Mail</th></tr>
</thead>
<tbody>
{dynamic maintainer,maintainers}<tr>
<th scope="row">{optional maintainer::*::name}{htmlspecialchars maintainer::*::name}{/optional}{!optional maintainer::*::name}{htmlspecialchars maintainer::*::address}{/optional}</th>
<td class="wide">{optional maintainer::*::address}<a href="mailto:{rawurlencode maintainer::*::mailbox}@{rawurlencode maintainer::*::host}">{htmlspecialchars maintainer::*::address}</a>{/optional}{!optional maintainer::*::address}—{/optional}</td>
<td class="number">{maintainer::*::count}</td>
<td class="number wide">{maintainer::*::size}</td>
<td><a href="mails/{rawurlencode maintainer::*::file}">read<span class="hidden"> the mail to {htmlspecialchars maintainer::*::name}</span></a></td>
</tr>
{/dynamic}</tbody>
</table>
{include footer.html.tpl}

{include header.html.tpl}
<h1>Books about {htmlspecialchars tag}</h1>
<ul>
{dynamic book,books}<li>{htmlspecialchars book::*::title}, {htmlspecialchars book::*::author}{optional book::*::year} ({book::*::year}){/optional}</li>
{/dynamic}</ul>

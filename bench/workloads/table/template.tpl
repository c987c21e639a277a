<h1>{title}</h1>
<table>
{dynamic row,rows}<tr class="{row::*::state}"><td>{row::*::id}</td><td>{htmlspecialchars row::*::name}</td><td>{row::*::mail}</td><td>{htmlspecialchars row::*::note}</td><td class="amount">{row::*::amount}</td></tr>
{/dynamic}</table>

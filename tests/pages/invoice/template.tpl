{include ../head.tpl}
<h1>Invoice {number}</h1>
<address>{htmlspecialchars customer::name}{optional customer::company}, {htmlspecialchars customer::company}{/optional}<br>
{customer::city 'no address'} {customer::country 'Utopia'}</address>
<table>
{dynamic line,lines}<tr{optional line::*::discount} class="cheap"{/optional}>
  <td>{line::[*]}</td><td>{htmlspecialchars line::*::article}{!optional line::*::stock} (not in stock){/optional}</td>
  <td>{line::*::count '1'} &times; {line::*::price}{optional line::*::unit 'hour'}/h{/optional}</td>
  <td>{dynamic note,line::*::notes}{!optional note::[*] 0}; {/optional}{htmlspecialchars note::*}{/dynamic}</td>
</tr>
{/dynamic}</table>
{optional paid}<p>Paid, thank you.</p>{/optional}{!optional paid}<p>Please pay until {due 'soon'}.</p>{/optional}
{optional status 'overdue'}<p class="warning">This is overdue.</p>
{/optional}<!-- {{total}} is {total} -->
</html>

<h1>{htmlspecialchars title}</h1>
<ul>
{dynamic dish,dishes}  <li>{htmlspecialchars dish::*::name}: {dish::*::price 'ask us'}</li>
{/dynamic}</ul>

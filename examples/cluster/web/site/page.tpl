{include header}<table>
{dynamic book,books}<tr><td>{book::[*]}</td><td>{htmlspecialchars book::*::title}</td><td>{book::*::price}{optional book::*::new} (new in release 1){/optional}</td></tr>
{/dynamic}</table>
{include footer}

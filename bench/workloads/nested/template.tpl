{dynamic shelf,shelves}<h2>{shelf::*::title}</h2>
<ul>
{dynamic item,shelf::*::items}<li id="{item::[*]}">{htmlspecialchars item::*::name}{optional item::*::new} <em>new</em>{/optional}</li>
{/dynamic}</ul>
{/dynamic}<hr>

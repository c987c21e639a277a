{total} articles, page {page '1'}
{dynamic a,articles}{a::[*]} {a::*::name 'unnamed'}{dynamic v,a::*::variants} [{v::[*]}: {v::*::colour}{optional v::*::sizes}, {dynamic v::*::sizes}{*} {/dynamic}{/optional}]{/dynamic}
{/dynamic}{dynamic x,empty}never{/dynamic}{dynamic x,missing}never{/dynamic}{dynamic x,total}never{/dynamic}{!optional empty}(the list of {x::* 'sold articles'} is empty)
{/optional}

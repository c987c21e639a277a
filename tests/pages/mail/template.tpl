Dear {name 'customer'},

{optional orders}you ordered {count} things:
{dynamic order,orders}
  {order::[*]}. {order::*::what}{optional order::*::late} - is late,
     we expect it on {order::*::when 'a later day'}{/optional}{/dynamic}
{/optional}{!optional orders}you have ordered nothing.
{/optional}
Track it at https://example.org/track?id={rawurlencode id}&mail={rawurlencode address}

{greeting regards 'Yours'},
the shop {{open daily}}

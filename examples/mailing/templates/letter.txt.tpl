Dear {name},

this is on its way to you:

{dynamic article,articles}  {article::*::quantity} x {article::*::title}{optional article::*::gift} (wrapped as a gift){/optional}
{/dynamic}
{include offer}
Your bookshop

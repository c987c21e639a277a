Dear {name},

{optional lines}here is what you ordered{optional city} for {city}{/optional}:

{dynamic line,lines}  {line::*::quantity} x {line::*::article} at {line::*::price}{optional line::*::gift} (wrapped as a gift){/optional}
{/dynamic}
Order {number}, {total} in all.
{/optional}{!optional lines}nothing is on its way to you at the moment.
{/optional}{optional vip}
As one of our best customers you pay no postage.
{/optional}
Your {sender 'bookshop'}

{dynamic day,days}{day::[*]}:{dynamic slot,hours}{optional day::*::closed} -{/optional}{!optional day::*::closed} {slot::*}{dynamic booked,day::*::booked}{optional booked::[*] 1}*{/optional}{/dynamic}{/optional}{/dynamic}{optional day::*::note}  ({day::*::note}){/optional}
{/dynamic}{rdynamic day,days}{!optional day::*::closed}{day::[*]} {/optional}{/rdynamic}

{{ }} {} { a } {{{name}}} a}b }}} {
{a} {a b::c 'x'} {''} {'it's'} {	tab} {a:b} {a
  b 'two
  lines'}
{*} {.*} {*::a::b} {.*::a} {[*]} {r::*} {r::*::a} {r::[*]} {a r::* .*}
{addslashes first name} {htmlentities a::b} {htmlspecialchars r::*::first name } {rawurlencode}
{optional a}{!optional a}{optionals}{optional  a::b }{optional r::[*] 1}{/optional}{/optional x}
{optional a 5}{optional a it's}{optional a 'x y'}{optional a x'ab'y}{optional a ''}{optional a   b  }
{dynamic rows}{dynamic r,rows}{dynamic ,rows}{dynamic r, a::b}{rdynamic r,s::*::t}{/dynamic}{/rdynamic}
{include head.tpl}{include  two words.tpl }{include 'quoted'}{include files::head}{includehead.tpl}

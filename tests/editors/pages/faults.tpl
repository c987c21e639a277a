{a::} {::a} {a:::b} {a::*::} {a::*::*} {*::*} {.*::[*]} {[*]::*} {r::[*]::a} {[*]x::a}
{x::y::*} {x::y::z::[*]}
{a'b} {a 'x' b} {a '} {'}
{dynamic} {dynamic x,} {rdynamic r,[*]} {dynamic r::[*]}
{include r::*::file} {include *} {include [*]} {include a::} {include ::a}
{optional a:: 'x'} {htmlspecialchars *::*}
{a {b} and all
the {rest}

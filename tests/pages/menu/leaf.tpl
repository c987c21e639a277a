{optional sub::*::sub}<ul>{dynamic leaf,*::sub}<li>{top::*::label} &gt; {htmlspecialchars sub::*::label} &gt; {htmlspecialchars leaf::*} {leaf::[*]}</li>{/dynamic}</ul>{/optional}

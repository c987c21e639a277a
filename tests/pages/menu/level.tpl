<ul>
{dynamic top,menu}<li{optional top::[*] news} class="here"{/optional}><a href="/{rawurlencode top::[*]}">{htmlspecialchars top::*::label}</a>{optional top::*::sub}<ul>{dynamic sub,top::*::sub}<li><a href="/{rawurlencode top::[*]}/{rawurlencode sub::[*]}">{htmlspecialchars sub::*::label}</a>{include leaf.tpl}</li>{/dynamic}</ul>{/optional}</li>
{/dynamic}</ul>

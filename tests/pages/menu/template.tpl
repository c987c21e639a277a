<nav>{include level.tpl}</nav>
<p>{optional here::parent}Up: {htmlspecialchars here::parent}{/optional}</p>
<ol>{rdynamic step,trail}<li value="{step::[*]}">{htmlspecialchars step::*}</li>{/rdynamic}</ol>

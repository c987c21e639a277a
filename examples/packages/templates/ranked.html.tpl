<li>
<a href="#{rawurlencode package::*::id}">{htmlspecialchars package::*::name}</a>
<span class="number">{package::*::size}</span>
<span class="bar" style="--part: {package::*::bar}%"></span>
</li>

{include header.html.tpl}<h1>{htmlspecialchars title}</h1>
<p class="lead">This site has a <a href="/">playground</a> and a <a href="/gallery">gallery</a>.</p>
{include footer.html.tpl}

<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>{htmlspecialchars title}</title>
<link rel="icon" href="data:image/svg+xml,%3Csvg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 32 32'%3E%3Crect width='32' height='32' rx='7' fill='%230a6a70'/%3E%3Ctext x='16' y='22' font-family='monospace' font-size='18' font-weight='bold' text-anchor='middle' fill='white'%3E{{}}%3C/text%3E%3C/svg%3E">
<link rel="stylesheet" href="/playground.css">
{optional page 'playground'}<script type="module" src="/playground.js"></script>
{/optional}{optional page 'manual'}{optional bundled}<script type="module" src="/bundle/manual.js"></script>
{/optional}{/optional}</head>
<body class="{page}">
<a class="skip" href="#main_content">Skip to the content</a>
<header class="masthead">
<a class="brand" href="/"><span aria-hidden="true">{{ }}</span> Template playground</a>
<nav aria-label="Site">
<a href="/"{optional page 'playground'} aria-current="page"{/optional}>Playground</a>
<a href="/gallery"{optional page 'gallery'} aria-current="page"{/optional}>Gallery</a>
<a href="/manual/README.md"{optional page 'manual'} aria-current="page"{/optional}>Manual</a>
</nav>
</header>
<main id="main_content" tabindex="-1">

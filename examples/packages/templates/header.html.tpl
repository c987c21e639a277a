{optional --}
The top of every page; the pages include it. A section over a value that does not exist is dropped while the template
is read, so a text like this one never reaches the output: nothing is called "--".

Text from the database goes through htmlspecialchars, also in the title. A number or a text that the script has made needs no
escaping.
{/optional}<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta name="color-scheme" content="light dark">
<title>{htmlspecialchars title}{!optional page 'index'} · Installed packages{/optional}</title>
<link rel="stylesheet" href="{root}style.css">
</head>
<body>
<a class="skip" href="#main_content">Skip to the content</a>
<header class="masthead">
<a class="brand" href="{root}index.html">Installed packages</a>
<nav aria-label="Site">
<a href="{root}index.html"{optional page 'index'} aria-current="page"{/optional}>Sections</a>
<a href="{root}maintainers.html"{optional page 'maintainers'} aria-current="page"{/optional}>Maintainers</a>
</nav>
</header>
<main id="main_content">

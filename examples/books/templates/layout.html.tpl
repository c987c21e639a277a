<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<title>{htmlspecialchars title}</title>
<style>body { font: 1.1rem/1.5 Georgia, serif; margin: 2rem auto; max-width: 36rem; }</style>
</head>
<body>
<p><a href="/">All books</a></p>
<h1>{htmlspecialchars title}</h1>
{include content}
<p><small>© {htmlspecialchars year} The bookshop</small></p>
</body>
</html>

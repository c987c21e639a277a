<!DOCTYPE html>
<html lang="en">
<meta charset="utf-8">
<title>{htmlspecialchars title}</title>
<style>
body { margin: 2rem auto; max-width: 34rem; padding: 0 1rem; font: 1rem/1.5 Georgia, serif; color: #222; }
h1 { font-size: 1.9rem; margin: 0 0 .3rem; }
table { width: 100%; border-collapse: collapse; margin: 1.5rem 0; }
th, td { padding: .45rem 0; border-bottom: 1px solid #ddd; text-align: left; }
th:last-child, td:last-child { text-align: right; }
.faint { color: #777; }
</style>

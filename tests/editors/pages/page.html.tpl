<!DOCTYPE html>
<html lang="{lang 'en'}">
<head>
    <title>{htmlspecialchars title}</title>
    <style>
        body { margin: 0 }
        .{theme} { color: {colour 'black'} }
        p {{color: red}}
    </style>
    <script>
        const page = { "url": "{rawurlencode url}" };
        if (page) { alert('{addslashes message}') }
    </script>
</head>
<body class="a {optional dark}dark{/optional}" {attributes ''}>
<!-- {comment} -->
{include partials/head.tpl}
{optional user::role 'admin'}<a href="/edit?id={rawurlencode user::id}">Edit</a>{/optional}
{!optional user}<a href={login}>Log in</a>{/optional}
<ul>
{dynamic group,groups}
    <li>{htmlentities group::[*]}
    {rdynamic item,group::*::items}
        <b>{item::*::name item::*::title 'it's nothing'}</b> {[*]} {*::size}
    {/rdynamic}
    </li>
{/dynamic}
</ul>
</body>
</html>

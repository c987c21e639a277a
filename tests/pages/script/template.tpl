<style>body {{ margin: 0 }} a { color: {colour '#123'}; } @media print {{ nav {{ display: none }}}}</style>
<script>
var page = {{ name: '{addslashes page::name}', path: '{addslashes page::path}' }};
var rows = [{dynamic r,rows}{!optional r::[*] 0}, {/optional}{{ id: {r::*::id}, label: '{addslashes r::*::label}' }}{/dynamic}];
if (rows.length) { go({{}}); }
document.title = "{unknown}" + '{other 'default'}';
</script>

<ol>
{dynamic text,texts}<li>{htmlspecialchars text::*}</li>
{/dynamic}</ol>

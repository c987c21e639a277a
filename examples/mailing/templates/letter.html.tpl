<!DOCTYPE html>
<p>Dear {htmlspecialchars name},</p>
<p>this is on its way to you:</p>
<ul>
{dynamic article,articles}<li>{htmlspecialchars article::*::quantity} × {htmlspecialchars article::*::title}{optional article::*::gift} <em>(wrapped as a gift)</em>{/optional}</li>
{/dynamic}</ul>
<p>{include offer}</p>
<p>Your bookshop</p>

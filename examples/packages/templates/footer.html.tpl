</main>
<footer>
<p>Made from dpkg’s database by the templates in <code>examples/packages</code>.{optional how} <a href="{root}how/{rawurlencode how}.html">How this page is made</a>.{/optional} <a href="#main_content">Back to the top</a></p>
</footer>
</body>
</html>

</main>
<footer>
<p>Made from dpkg’s database by the templates in <code>examples/packages</code>. <a href="#main_content">Back to the top</a></p>
</footer>
</body>
</html>

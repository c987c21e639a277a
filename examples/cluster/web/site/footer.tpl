<p>Release 1</p>

<p>There is no such page.</p>

<?php foreach ($data['shelves'] as $shelf): ?><h2><?= $shelf['title'] ?></h2>
<ul>
<?php foreach ($shelf['items'] as $key => $item): ?><li id="<?= $key ?>"><?= htmlspecialchars($item['name'], ENT_COMPAT, 'ISO-8859-1') ?><?php if ($item['new']): ?> <em>new</em><?php endif ?></li>
<?php endforeach ?></ul>
<?php endforeach ?><hr>

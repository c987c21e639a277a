<h1><?= $data['title'] ?></h1>
<table>
<?php foreach ($data['rows'] as $row): ?><tr class="<?= $row['state'] ?>"><td><?= $row['id'] ?></td><td><?= htmlspecialchars($row['name'], ENT_COMPAT, 'ISO-8859-1') ?></td><td><?= $row['mail'] ?></td><td><?= htmlspecialchars($row['note'], ENT_COMPAT, 'ISO-8859-1') ?></td><td class="amount"><?= $row['amount'] ?></td></tr>
<?php endforeach ?></table>

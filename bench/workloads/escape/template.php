<ol>
<?php foreach ($data['texts'] as $text): ?><li><?= htmlspecialchars($text, ENT_COMPAT, 'ISO-8859-1') ?></li>
<?php endforeach ?></ol>

round {include ./round.tpl}

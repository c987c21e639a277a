{title}|{htmlspecialchars title}|{htmlentities title}|{rawurlencode title}
{dynamic t,texts}{t::[*]}: {t::*}|{htmlspecialchars t::*}|{htmlentities t::*}|{rawurlencode t::*}
{/dynamic}

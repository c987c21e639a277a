<li>{htmlspecialchars r::*::name}</li>

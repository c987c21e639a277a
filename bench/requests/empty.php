<?php

// What a request costs before it does anything; subtracted from the others.

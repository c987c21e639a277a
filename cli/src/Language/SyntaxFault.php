<?php

declare(strict_types=1);

namespace TemplateCli\Language;

/** A part of a tag that the engine refuses. The message is the engine's, without its " in FILE". */
final class SyntaxFault extends \RuntimeException
{
}

<?php

declare(strict_types=1);

namespace TemplateCli\Language;

enum ReferenceKind
{
    /** A path from the top of the user data. */
    case Root;
    /** A path from the current element of a repeated section. */
    case SectionValue;
    /** The current key of a repeated section. */
    case SectionKey;
}

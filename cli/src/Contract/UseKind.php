<?php

declare(strict_types=1);

namespace TemplateCli\Contract;

/** What a tag does with a value. */
enum UseKind: string
{
    case Text = 'text';
    case Escaped = 'escaped text';
    case Condition = 'condition';
    case Comparison = 'comparison';
    case Section = 'section';
    case Key = 'key';
    case KeyComparison = 'key comparison';
    case File = 'file name';
}

<?php

declare(strict_types=1);

namespace TemplateCli;

/** The command line, or a file that it names, asks for something that cannot be done. Exit status 2. */
final class UsageError extends \RuntimeException
{
}

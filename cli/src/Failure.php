<?php

declare(strict_types=1);

namespace TemplateCli;

/** The work could not be finished: a full disk, a closed pipe. Exit status 1. */
final class Failure extends \RuntimeException
{
}

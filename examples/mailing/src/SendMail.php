<?php

declare(strict_types=1);

namespace Mailing;

/** A job in the queue: look whether this mail is to be sent, and send it. What the mail is stands in the outbox. */
final readonly class SendMail
{
    public function __construct(public int $mail)
    {
    }
}

<?php

declare(strict_types=1);

namespace Mailing;

use Symfony\Component\Mailer\Exception\TransportExceptionInterface;
use Symfony\Component\Mailer\Transport\TransportInterface;
use Symfony\Component\Messenger\Exception\RecoverableMessageHandlingException;
use Symfony\Component\Messenger\Exception\UnrecoverableMessageHandlingException;

/** Does one job: claims the mail, sends it, and says so. */
final readonly class SendMailHandler
{
    /** @param bool $hold whether a mail that may have gone out is left to a person, or sent again under the same Message-ID */
    public function __construct(private Outbox $outbox, private Letter $letter, private TransportInterface $smtp, private bool $hold)
    {
    }

    public function __invoke(SendMail $job): void
    {
        $mail = $this->outbox->find($job->mail);
        match ($mail['state'] ?? 'sent') {
            'sent' => null,
            'failed' => throw new UnrecoverableMessageHandlingException($mail['error']),
            'sending' => $mail['abandoned'] ? $this->takeOver($mail) : null,
            'waiting' => $this->send($mail),
        };
    }

    private function takeOver(array $mail): void
    {
        $this->mayBeOut("$mail[worker] ended before it could say whether the mail went out.");
        $this->send($mail);
    }

    private function send(array $mail): void
    {
        $email = $this->letter->write($mail);
        if (!$this->outbox->claim($mail['id'])) {
            return;
        }
        try {
            $this->smtp->send($email);
        } catch (TransportExceptionInterface $exception) {
            $this->refused($mail['id'], $exception);
        }
        $this->outbox->sent($mail['id']);
    }

    /**
     * What the server answered with a code, it did not take. Without an answer it may have, but only if it had asked for
     * the text of the mail (354).
     */
    private function refused(int $id, TransportExceptionInterface $exception): never
    {
        $code = $exception->getCode();
        if ($code < 400 && str_contains($exception->getDebug(), '< 354')) {
            $this->mayBeOut('The SMTP server took the mail and did not answer.');
        }
        $this->outbox->release($id, $exception->getMessage());
        throw match (true) {
            $code >= 500 => new UnrecoverableMessageHandlingException($exception->getMessage(), $code, $exception),
            $code >= 400 => $exception,
            default => new RecoverableMessageHandlingException($exception->getMessage(), 0, $exception),
        };
    }

    private function mayBeOut(string $why): void
    {
        !$this->hold || throw new UnrecoverableMessageHandlingException($why);
    }
}

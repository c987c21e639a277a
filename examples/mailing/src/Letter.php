<?php

declare(strict_types=1);

namespace Mailing;

use Symfony\Component\Messenger\Exception\UnrecoverableMessageHandlingException;
use Symfony\Component\Mime\Address;
use Symfony\Component\Mime\Email;
use Symfony\Component\Mime\Exception\ExceptionInterface;

/** Makes the mail of one recipient from the templates. */
final readonly class Letter
{
    public function __construct(private string $templates, private string $domain)
    {
        set_include_path($templates . PATH_SEPARATOR . get_include_path());
    }

    /** @param array{id: int, address: string, data: string} $mail */
    public function write(array $mail): Email
    {
        try {
            $data = json_decode($mail['data'], true, flags: JSON_THROW_ON_ERROR);
            $email = (new Email())
                ->from(new Address("orders@$this->domain", 'The bookshop'))
                ->to(new Address($mail['address'], $data['name'] ?? ''))
                ->subject(trim($this->render('subject.txt.tpl', $data)))
                ->text($this->render('letter.txt.tpl', $data))
                ->html($this->render('letter.html.tpl', $data));
        } catch (ExceptionInterface | \JsonException $exception) {
            throw new UnrecoverableMessageHandlingException($exception->getMessage(), 0, $exception);
        }
        // The same in each attempt at this mail, so that whoever receives it twice can tell.
        $email->getHeaders()->addIdHeader('Message-ID', "order-$mail[id]@$this->domain");
        return $email;
    }

    /** A template that fails will fail again: the mail goes to the failure transport, with the engine's message. */
    private function render(string $file, array $data): string
    {
        error_clear_last();
        return @template("$this->templates/$file", $data)
            ?? throw new UnrecoverableMessageHandlingException(error_get_last()['message'] ?? "$file cannot be rendered.");
    }
}

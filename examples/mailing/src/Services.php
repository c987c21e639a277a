<?php

declare(strict_types=1);

namespace Mailing;

use Doctrine\DBAL\Connection;
use Doctrine\DBAL\DriverManager;
use Doctrine\DBAL\Tools\DsnParser;
use Symfony\Component\EventDispatcher\EventDispatcher;
use Symfony\Component\Mailer\Transport;
use Symfony\Component\Mailer\Transport\TransportInterface as Smtp;
use Symfony\Component\Messenger\Bridge\Doctrine\Transport\Connection as TableQueue;
use Symfony\Component\Messenger\Bridge\Doctrine\Transport\DoctrineTransport;
use Symfony\Component\Messenger\Bridge\Redis\Transport\Connection as StreamQueue;
use Symfony\Component\Messenger\Bridge\Redis\Transport\RedisTransport;
use Symfony\Component\Messenger\Event\WorkerMessageFailedEvent;
use Symfony\Component\Messenger\EventListener\AddErrorDetailsStampListener;
use Symfony\Component\Messenger\EventListener\SendFailedMessageForRetryListener;
use Symfony\Component\Messenger\EventListener\SendFailedMessageToFailureTransportListener;
use Symfony\Component\Messenger\Handler\HandlersLocator;
use Symfony\Component\Messenger\MessageBus;
use Symfony\Component\Messenger\Middleware\HandleMessageMiddleware;
use Symfony\Component\Messenger\Middleware\SendMessageMiddleware;
use Symfony\Component\Messenger\Retry\MultiplierRetryStrategy;
use Symfony\Component\Messenger\Transport\Sender\SendersLocator;
use Symfony\Component\Messenger\Transport\Serialization\PhpSerializer;
use Symfony\Component\Messenger\Transport\TransportInterface;
use Symfony\Contracts\Service\ServiceLocatorTrait;
use Symfony\Contracts\Service\ServiceProviderInterface;

/** Puts the parts together, from settings in the environment. In a Symfony project its container does all this. */
final readonly class Services
{
    /** A job is handed out again when its worker has not been heard of for so many seconds on top of the lease. */
    private const GRACE = 150;

    public Outbox $outbox;
    public TransportInterface $queue;
    public TransportInterface $failed;
    public MessageBus $bus;
    public EventDispatcher $events;
    public int $lease;

    public function __construct()
    {
        $worker = self::setting('WORKER', gethostname() . '-' . getmypid());
        $this->lease = (int) self::setting('LEASE', '30');
        $database = self::database(self::setting('DATABASE'));
        $this->outbox = new Outbox($database, $worker, $this->lease);
        $this->queue = $this->queue(self::setting('QUEUE'), $worker, $database);
        $this->failed = self::table($database, ['queue_name' => 'failed']);
        $letter = new Letter(self::setting('TEMPLATES', __DIR__ . '/../templates'), 'bookshop.example');
        $handler = new SendMailHandler($this->outbox, $letter, $this->smtp(self::setting('SMTP')), self::setting('IN_DOUBT', 'again') === 'hold');
        $this->bus = new MessageBus([
            new SendMessageMiddleware(new SendersLocator([SendMail::class => ['queue']], $this->locator(queue: $this->queue))),
            new HandleMessageMiddleware(new HandlersLocator([SendMail::class => [$handler]])),
        ]);
        $this->events = $this->events();
    }

    public function locator(object ...$services): ServiceProviderInterface
    {
        return new class(array_map(fn (object $service) => fn () => $service, $services)) implements ServiceProviderInterface {
            use ServiceLocatorTrait;
        };
    }

    /** Whether no job waits for a worker. A queue that is away may have any number of them. */
    public function isQueueEmpty(): bool
    {
        try {
            return $this->queue->getMessageCount() === 0;
        } catch (\Exception) {
            return false;
        }
    }

    /** What cannot be sent now is tried again, after 0.5 s, 1 s, 2 s, … 10 min; what cannot be sent at all is set aside. */
    private function events(): EventDispatcher
    {
        $retry = new MultiplierRetryStrategy(maxRetries: 15, delayMilliseconds: 500, multiplier: 2, maxDelayMilliseconds: 600_000);
        $events = new EventDispatcher();
        $events->addSubscriber(new AddErrorDetailsStampListener());
        $events->addSubscriber(new SendFailedMessageForRetryListener($this->locator(queue: $this->queue), $this->locator(queue: $retry)));
        $events->addSubscriber(new SendFailedMessageToFailureTransportListener($this->locator(queue: $this->failed)));
        $events->addListener(WorkerMessageFailedEvent::class, function (WorkerMessageFailedEvent $event): void {
            if ($event->willRetry()) {
                usleep(250_000); // a server in trouble is not asked for every mail of the queue at once
            } else {
                $error = $event->getThrowable();
                $this->outbox->failed($event->getEnvelope()->getMessage()->mail, ($error->getPrevious() ?? $error)->getMessage());
            }
        });
        return $events;
    }

    private static function database(string $dsn): Connection
    {
        $database = DriverManager::getConnection((new DsnParser(['sqlite' => 'pdo_sqlite', 'pgsql' => 'pdo_pgsql']))->parse($dsn));
        if (str_starts_with($dsn, 'sqlite')) {
            $database->executeStatement('PRAGMA journal_mode = WAL');
            $database->executeStatement('PRAGMA synchronous = NORMAL');
        }
        return $database;
    }

    /** A stream of Valkey or Redis, or "doctrine": a table beside the outbox. */
    private function queue(string $dsn, string $worker, Connection $database): TransportInterface
    {
        $redeliver = $this->lease + self::GRACE;
        return $dsn === 'doctrine'
            ? self::table($database, ['queue_name' => 'mails', 'redeliver_timeout' => $redeliver])
            : new RedisTransport(StreamQueue::fromDsn($dsn, [
                'stream' => 'mails', 'consumer' => $worker, 'redeliver_timeout' => $redeliver, 'claim_interval' => 5000, 'lazy' => true,
            ]));
    }

    private static function table(Connection $database, array $options): TransportInterface
    {
        return new DoctrineTransport(new TableQueue($options, $database), new PhpSerializer());
    }

    /** A server that does not answer is given up well within the lease; the last line of a mail does not wait for company. */
    private function smtp(string $dsn): Smtp
    {
        $smtp = Transport::fromDsn($dsn);
        $smtp->getStream()->setTimeout($this->lease / 3)->setStreamOptions(['socket' => ['tcp_nodelay' => true]]);
        return $smtp;
    }

    private static function setting(string $name, ?string $default = null): string
    {
        return (getenv("MAILING_$name") ?: $default) ?? throw new \RuntimeException("MAILING_$name is not set.");
    }
}

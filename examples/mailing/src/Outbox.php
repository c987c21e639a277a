<?php

declare(strict_types=1);

namespace Mailing;

use Doctrine\DBAL\Connection;
use Doctrine\DBAL\Exception\DriverException;

/**
 * The table of mails, a row for each recipient. It alone knows what has become of a mail: the queue only says which mail
 * to look at, so whatever the queue repeats or loses, nobody gets two mails or none.
 *
 *     waiting --claim--> sending --sent--> sent
 *     waiting <-release- sending
 *     waiting <-again--- failed <--failed-- waiting, sending
 *
 * A mail that is "sending" belongs to one worker. When that worker has died, its successor of the same name takes the
 * mail over at once, any other worker after the lease.
 */
final readonly class Outbox
{
    /** For how many seconds a database that is away is waited for. */
    private const PATIENCE = 120;

    /** @param int $lease seconds that a worker may keep a mail; sending one must take less */
    public function __construct(private Connection $database, private string $worker, private int $lease)
    {
    }

    /** @param iterable<int, array{string, array}> $mails address and data of each, by number; known numbers are left alone */
    public function add(iterable $mails): void
    {
        $this->run("CREATE TABLE IF NOT EXISTS mail (
            id BIGINT PRIMARY KEY, address TEXT NOT NULL, data TEXT NOT NULL, state TEXT NOT NULL DEFAULT 'waiting',
            worker TEXT, claimed_at TIMESTAMP, attempts INTEGER NOT NULL DEFAULT 0, error TEXT)");
        $this->database->transactional(function () use ($mails): void {
            $insert = $this->database->prepare('INSERT INTO mail (id, address, data) VALUES (?, ?, ?) ON CONFLICT DO NOTHING');
            foreach ($mails as $id => [$address, $data]) {
                array_map($insert->bindValue(...), [1, 2, 3], [$id, $address, json_encode($data, JSON_THROW_ON_ERROR)]);
                $insert->executeStatement();
            }
        });
    }

    /** A mail; "abandoned" says whether somebody has claimed it and will not come back to it. */
    public function find(int $id): ?array
    {
        $query = "SELECT mail.*, CASE WHEN {$this->isAbandoned()} THEN 1 ELSE 0 END AS abandoned FROM mail WHERE id = ?";
        return $this->patiently(fn () => $this->database->fetchAssociative($query, [$this->worker, $id])) ?: null;
    }

    /** Whether this worker may send the mail. From here on until it says what came of it, nobody else may. */
    public function claim(int $id): bool
    {
        return 1 === $this->run(
            "UPDATE mail SET state = 'sending', worker = ?, claimed_at = CURRENT_TIMESTAMP, attempts = attempts + 1
             WHERE id = ? AND (state = 'waiting' OR {$this->isAbandoned()})",
            [$this->worker, $id, $this->worker],
        );
    }

    public function sent(int $id): void
    {
        $this->run("UPDATE mail SET state = 'sent', error = NULL WHERE id = ?", [$id]);
    }

    /** Not now: the mail waits for its next turn. */
    public function release(int $id, string $why): void
    {
        $this->run("UPDATE mail SET state = 'waiting', error = ? WHERE id = ? AND state = 'sending'", [$why, $id]);
    }

    public function failed(int $id, string $why): void
    {
        $this->run("UPDATE mail SET state = 'failed', error = ? WHERE id = ? AND state <> 'sent'", [$why, $id]);
    }

    /** A failed mail gets another chance. */
    public function again(int $id): void
    {
        $this->run("UPDATE mail SET state = 'waiting' WHERE id = ? AND state = 'failed'", [$id]);
    }

    /** @return iterable<int> the numbers of all mails that are to be sent yet */
    public function unsent(): iterable
    {
        for ($last = 0; $ids = $this->patiently(fn () => $this->database->fetchFirstColumn(
            "SELECT id FROM mail WHERE id > ? AND state IN ('waiting', 'sending') ORDER BY id LIMIT 1000",
            [$last],
        )); $last = end($ids)) {
            yield from $ids;
        }
    }

    /** @return array<string, int> how many mails are in each state, and the attempts at all of them */
    public function count(): array
    {
        $rows = $this->patiently(fn () => $this->database->fetchAllNumeric('SELECT state, COUNT(*), SUM(attempts) FROM mail GROUP BY state'));
        return ['attempts' => array_sum(array_column($rows, 2))] + array_column($rows, 1, 0)
            + ['waiting' => 0, 'sending' => 0, 'sent' => 0, 'failed' => 0];
    }

    /** @return array<string, int> what is wrong with the mails in a state, and how many each concerns */
    public function errors(string $state): array
    {
        return $this->patiently(fn () => $this->database->fetchAllKeyValue(
            'SELECT error, COUNT(*) FROM mail WHERE state = ? AND error IS NOT NULL GROUP BY error ORDER BY 2 DESC LIMIT 5',
            [$state],
        ));
    }

    /** Clocks of different machines differ, so the database's own is asked. */
    private function isAbandoned(): string
    {
        $end = $this->database->getDatabasePlatform()->getDateSubSecondsExpression('CURRENT_TIMESTAMP', (string) $this->lease);
        return "(state = 'sending' AND (worker = ? OR claimed_at < $end))";
    }

    private function run(string $statement, array $values = []): int
    {
        return (int) $this->patiently(fn () => $this->database->executeStatement($statement, $values));
    }

    /** When the database goes away, waits until it is back and asks again: each statement here may be run twice. */
    private function patiently(callable $ask): mixed
    {
        try {
            return $ask();
        } catch (DriverException) {
            for ($end = time() + self::PATIENCE; ; usleep(200_000)) {
                try {
                    $this->database->close();
                    $this->database->fetchOne('SELECT 1');
                    return $ask();
                } catch (DriverException $exception) {
                    time() < $end || throw $exception;
                }
            }
        }
    }
}

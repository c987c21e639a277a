<?php

/** The commands of the example: php mailing.php list. Settings come from the environment (src/Services.php). */

declare(strict_types=1);

use Mailing\Progress;
use Mailing\SendMail;
use Mailing\Services;
use Symfony\Component\Console\Application;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Output\OutputInterface;
use Symfony\Component\Messenger\Command\ConsumeMessagesCommand;
use Symfony\Component\Messenger\Command\FailedMessagesShowCommand;
use Symfony\Component\Messenger\RoutableMessageBus;

// Debian's packages, those that are there; a project with composer has vendor/autoload.php.
foreach (['Console', 'EventDispatcher', 'Mailer', 'Messenger', 'Messenger/Bridge/Doctrine', 'Messenger/Bridge/Redis'] as $component) {
    ($file = stream_resolve_include_path("Symfony/Component/$component/autoload.php")) && require_once $file;
}
require_once 'Doctrine/DBAL/autoload.php';
foreach (['SendMail', 'Outbox', 'Letter', 'SendMailHandler', 'Services', 'Progress'] as $class) {
    require __DIR__ . "/src/$class.php";
}

$services = new Services();
$application = new Application('mailing');
$command = fn (string $name, string $description) => $application->register($name)->setDescription($description);

$command('fill', 'Make up orders to write to')
    ->addArgument('count')->addArgument('faulty', description: 'one in so many has a fault', default: 0)
    ->setCode(function (InputInterface $input) use ($services): int {
        $orders = require __DIR__ . '/orders.php';
        $services->outbox->add($orders((int) $input->getArgument('count'), (int) $input->getArgument('faulty')));
        return 0;
    });

$command('sample', 'Print the data of the first mails that are not sent yet, a line of JSON each')
    ->addArgument('count', default: 20)
    ->setCode(function (InputInterface $input, OutputInterface $output) use ($services): int {
        foreach (new LimitIterator(new IteratorIterator($services->outbox->unsent()), 0, (int) $input->getArgument('count')) as $id) {
            $output->writeln($services->outbox->find((int) $id)['data'], OutputInterface::OUTPUT_RAW);
        }
        return 0;
    });

/** Whatever is not sent yet gets a job. One job too many does no harm. */
$dispatch = function () use ($services): void {
    foreach ($services->outbox->unsent() as $id) {
        $services->bus->dispatch(new SendMail((int) $id));
    }
};
$command('dispatch', 'Put a job into the queue for each mail that is not sent yet')->setCode(fn () => $dispatch() ?? 0);

$command('again', 'Try what has failed once more')->setCode(function (InputInterface $input, OutputInterface $output) use ($services): int {
    for ($count = 0; $jobs = [...$services->failed->all(100)]; $count += count($jobs)) {
        foreach ($jobs as $job) {
            $services->outbox->again($job->getMessage()->mail);
            $services->bus->dispatch(new SendMail($job->getMessage()->mail));
            $services->failed->reject($job);
        }
    }
    $output->writeln("$count mails get another chance.");
    return 0;
});

$command('watch', 'Show the progress until each mail is sent or set aside')->setCode(function (InputInterface $input, OutputInterface $output) use ($services, $dispatch): int {
    $outbox = $services->outbox;
    $progress = new Progress($output, $outbox->count());
    for ($quiet = 0, $last = null; Progress::left($count = $outbox->count()) > 0; usleep(500_000)) {
        $stands = $count['sent'] === ($last['sent'] ?? null);
        $progress->show($count, $stands ? array_key_first($outbox->errors('waiting')) : null);
        // Nothing has moved for longer than a worker may take: should the queue have lost its jobs, here they are again.
        $quiet = $count == $last ? $quiet + 1 : 0;
        if ($quiet > 2 * $services->lease + 4 && $services->isQueueEmpty()) {
            $dispatch();
            $quiet = 0;
        }
        $last = $count;
    }
    $progress->show($count);
    $output->writeln('');
    foreach ($outbox->errors('failed') as $error => $mails) {
        $output->writeln("$mails failed: $error");
    }
    return $count['failed'] > 0 ? 1 : 0;
});

$failures = $services->locator(failed: $services->failed);
$application->add(new ConsumeMessagesCommand(new RoutableMessageBus($failures, $services->bus), $services->locator(queue: $services->queue), $services->events));
$application->add(new FailedMessagesShowCommand('failed', $failures));
exit($application->run());

<?php
declare(strict_types=1);

/* The mailing in short: real servers with one killed worker and an SMTP server that refuses; the small one; wrong use. */

require __DIR__ . '/../lib/harness.php';
require __DIR__ . '/mailing.php';

$mailing = new Mailing('--real', '--recipients', '1200', '--faulty', '100');
$mailing->until(100);
$mailing->kill('worker-1');
$mailing->until(300);
$mailing->mood('refuse');
sleep(2);
$mailing->mood('');
$mailing->end();
check('a worker is killed and the SMTP server refuses: each mail once', $mailing->faults(1200, 100, 1));
$mailing->remove();

$small = new Mailing('--recipients', '50', '--faulty', '25');
$small->end();
check('with SQLite and no servers: each mail once', $small->faults(50, 25, 0));
$settings = ['MAILING_DATABASE' => "sqlite:///$small->folder/mails.sqlite", 'MAILING_QUEUE' => 'doctrine', 'MAILING_SMTP' => 'smtp://127.0.0.1'];
array_walk($settings, fn (string $value, string $name) => putenv("$name=$value"));
[, $shown] = run([getenv('PHP'), __DIR__ . '/../../examples/mailing/mailing.php', 'messenger:failed:show']);
check('the failure transport has the engine\'s message', differences(2, substr_count($shown, 'circle is detected in'), 'mails with it'));
$small->remove();

$place = scratch_folder();
$nothing = ['file', '/dev/null', 'w'];
$process = proc_open([__DIR__ . '/../../examples/mailing/run', '--real'], [1 => $nothing, 2 => $nothing], $pipes, null, ['TMPDIR' => $place] + getenv());
for ($end = time() + 30; !glob("$place/*/worker-2.pid") && time() < $end; usleep(100_000));
$pids = array_map(file_get_contents(...), glob("$place/*/*.pid"));
proc_terminate($process);
$status = proc_close($process);
$alive = array_filter($pids, fn (string $pid) => posix_kill((int) $pid, 0));
check('interrupted, it leaves nothing behind', differences([143, 5, [], []], [$status, count($pids), $alive, names_in($place)]));
remove_tree($place);

$misfit = new Mailing('--recipients', '30', '--faulty', '10');
$misfit->end();
check('data that the templates cannot take is found before the first mail', differences(
    [1, 0],
    [preg_match('/offers.postage.*circle is detected[^~]*nothing was sent\.$/', trim($misfit->output())), count($misfit->journal())],
));
$misfit->remove();

require 'Doctrine/DBAL/autoload.php';
require __DIR__ . '/../../examples/mailing/src/Outbox.php';
$database = Doctrine\DBAL\DriverManager::getConnection(['driver' => 'pdo_sqlite', 'memory' => true]);
$claim = fn (string $worker) => (new Mailing\Outbox($database, $worker, 60))->claim(1);
$outbox = new Mailing\Outbox($database, 'one', 60);
$outbox->add([1 => ['ann@example.org', []]]);
$claims = [$claim('one'), $claim('two'), $claim('one')];
$database->executeStatement("UPDATE mail SET claimed_at = '2020-01-01 00:00:00'");
$claims[] = $claim('two');
$outbox->sent(1);
check('a mail is its worker\'s, its namesake\'s, and another\'s after the lease; and nobody\'s when it is sent', differences(
    [true, false, true, true, false],
    [...$claims, $claim('two')],
));

$taken = stream_socket_server('tcp://127.0.0.1:0');
$port = substr(strrchr(stream_socket_get_name($taken, false), ':'), 1);
$wrong = [
    [2, 'mailing: --recipients takes a number.', ['--recipients', 'many']],
    [2, 'mailing: SQLite lets one process write at a time: more than one worker needs --real.', ['--workers', '2']],
    [1, "mailing: Port $port is taken; --port names another, and without it a free one is found.", ['--port', $port]],
];
foreach ($wrong as [$expected, $sentence, $options]) {
    [$status, , $said] = run([__DIR__ . '/../../examples/mailing/run', ...$options]);
    check("wrong: $sentence", differences([$expected, "$sentence\n"], [$status, $said]));
}

echo "$passed passed, $failed failed\n";
exit($failed > 0 ? 1 : 0);

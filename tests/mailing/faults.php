<?php
declare(strict_types=1);

/* What can happen to a mailing, one fault after the other and then all at once: "./dev mailing --full", some minutes. */

require __DIR__ . '/../lib/harness.php';
require __DIR__ . '/mailing.php';

const MAILS = 2000;

/** @param int $duplicates how many mails may reach the SMTP server twice; it drops the second one */
function scenario(string $what, int $duplicates, callable $fault, int $faulty = 0, array $options = []): void
{
    $start = microtime(true);
    $mailing = new Mailing('--real', '--recipients', (string) MAILS, '--faulty', (string) $faulty, ...$options);
    $mailing->until(200);
    $complaints = [...($fault($mailing) ?? [])];
    $mailing->end();
    $duplicate = count(array_keys(array_column($mailing->journal(), 3), 'duplicate', true));
    check(sprintf('%s (%d duplicates dropped, %.0f s)', $what, $duplicate, microtime(true) - $start), [...$complaints, ...$mailing->faults(MAILS, $faulty, $duplicates)]);
    $mailing->remove();
}

/** Kills workers again and again. */
function massacre(Mailing $mailing): void
{
    for ($kills = 0; $kills < 10; ++$kills) {
        usleep(random_int(300_000, 600_000));
        $mailing->kill('worker-' . random_int(1, 2));
    }
}

/** The SMTP server takes a mail of each worker and says nothing: there the workers die. */
function die_in_the_window(Mailing $mailing): void
{
    $mailing->mood('silent');
    usleep(800_000);
    $mailing->kill('worker-1');
    $mailing->kill('worker-2');
    $mailing->mood('');
}

scenario('workers are killed ten times', 10, massacre(...));
scenario('workers are killed between the SMTP server\'s taking a mail and its answer', 2, die_in_the_window(...));
scenario('the line breaks between the SMTP server\'s taking a mail and its answer', MAILS, function (Mailing $mailing): iterable {
    $mailing->mood('hangup');
    usleep(800_000);
    $mailing->mood('');
    $mailing->end();
    yield from differences(true, in_array('duplicate', array_column($mailing->journal(), 3), true), 'a mail was sent again');
});
scenario('the same with --hold: what may be out is left to a person', 0, function (Mailing $mailing): iterable {
    die_in_the_window($mailing);
    $mailing->end();
    yield from differences(1, preg_match('/failed: worker-. ended before it could say/', $mailing->output()), 'it is told');
}, options: ['--hold']);
scenario('the queue is restarted', 0, fn (Mailing $mailing) => $mailing->away('valkey', 2));
scenario('the queue loses all it had', 0, function (Mailing $mailing): void {
    run(['valkey-cli', '-s', "$mailing->folder/valkey.sock", 'FLUSHALL']);
});
scenario('the database is away for ten seconds', 0, fn (Mailing $mailing) => $mailing->away('postgresql', 10));
scenario('the SMTP server refuses for five seconds', 0, function (Mailing $mailing): void {
    $mailing->mood('refuse');
    sleep(5);
    $mailing->mood('');
});
scenario('the SMTP server is killed and away for three seconds', 2, fn (Mailing $mailing) => $mailing->away('smtp', 3));
scenario('one in fifty has a template with a fault; it is mended, and they are sent', 0, function (Mailing $mailing): iterable {
    $mailing->end();
    yield from $mailing->faults(MAILS, 50, 0);
    file_put_contents("$mailing->folder/templates/offers/postage.txt.tpl", 'The next book comes free of postage.');
    $mailing->start('--again');
}, options: ['--faulty', '50']);
scenario('the mailing itself is killed, and started again', 2, function (Mailing $mailing): void {
    $mailing->crash();
    $mailing->start();
});
scenario('all at once', 40, function (Mailing $mailing): void {
    massacre($mailing);
    $mailing->away('valkey', 1);
    $mailing->away('postgresql', 2);
    $mailing->mood('refuse');
    massacre($mailing);
    $mailing->mood('hangup');
    sleep(1);
    $mailing->mood('');
    $mailing->away('smtp', 1);
    massacre($mailing);
}, faulty: 50);

echo "$passed passed, $failed failed\n";
exit($failed > 0 ? 1 : 0);

<?php
declare(strict_types=1);

/** In memory where that can be had: what dies here are processes, and the disk is not what is tested. */
function scratch_folder(): string
{
    $folder = (is_writable('/dev/shm') ? '/dev/shm' : sys_get_temp_dir()) . '/mailing-test-' . bin2hex(random_bytes(4));
    mkdir($folder);
    return $folder;
}

/** A mailing that runs in a folder, and what can be done to it. */
final class Mailing
{
    public readonly string $folder;
    private readonly array $command;
    private mixed $process;

    public function __construct(string ...$options)
    {
        $this->folder = scratch_folder();
        run(['cp', '-r', __DIR__ . '/../../examples/mailing/templates', $this->folder]);
        $this->command = [__DIR__ . '/../../examples/mailing/run', '--keep', $this->folder, ...$options];
        $this->start();
        register_shutdown_function($this->remove(...));
    }

    public function start(string ...$more): void
    {
        $settings = ['MAILING_LEASE' => '5', 'MAILING_TEMPLATES' => "$this->folder/templates"];
        $this->process = proc_open([...$this->command, ...$more], [['file', '/dev/null', 'r'], ['file', "$this->folder/output", 'w'], ['redirect', 1]], $pipes, null, $settings + getenv());
    }

    /** Waits until so many mails went out. */
    public function until(int $mails): void
    {
        for ($end = time() + 180; count($this->journal()) < $mails && $this->runs(); usleep(100_000)) {
            time() < $end || throw new RuntimeException("There are no $mails mails after 180 s: " . $this->output());
        }
    }

    public function kill(string $name): void
    {
        posix_kill((int) file_get_contents("$this->folder/$name.pid"), SIGKILL);
    }

    /** Kills the mailing itself; its workers and servers end with it. */
    public function crash(): void
    {
        proc_terminate($this->process, SIGKILL);
        $this->end();
        sleep(2);
    }

    /** Takes a server away for a while. */
    public function away(string $name, float $seconds): void
    {
        touch("$this->folder/$name.hold");
        $this->kill($name);
        usleep((int) ($seconds * 1e6));
        unlink("$this->folder/$name.hold");
    }

    public function mood(string $mood): void
    {
        file_put_contents("$this->folder/mood", $mood);
    }

    /** @return list<array{string, string, int, string}> what the SMTP server took: when, Message-ID, size, what became of it */
    public function journal(): array
    {
        $lines = is_file("$this->folder/journal") ? file("$this->folder/journal", FILE_IGNORE_NEW_LINES) : [];
        return array_map(fn (string $line) => explode(' ', $line), $lines);
    }

    public function output(): string
    {
        return file_get_contents("$this->folder/output");
    }

    public function runs(): bool
    {
        return proc_get_status($this->process)['running'];
    }

    /** Waits for the end. */
    public function end(int $seconds = 300): void
    {
        for ($end = time() + $seconds; $this->runs(); usleep(50_000)) {
            time() < $end || throw new RuntimeException("It does not end: " . $this->output());
        }
    }

    /** Complains when not each of the mails went out once, save those with a fault, or too many went out twice. */
    public function faults(int $mails, int $faulty, int $duplicates): iterable
    {
        $taken = array_count_values(array_column($this->journal(), 1));
        $expected = array_filter(range(1, $mails), fn (int $id) => $faulty === 0 || $id % $faulty > 0);
        $missing = array_diff(array_map(fn (int $id) => "<order-$id@bookshop.example>", $expected), array_keys($taken));
        if ($missing) {
            yield count($missing) . ' mails did not go out, such as ' . current($missing);
        }
        if (count($taken) > count($expected)) {
            yield count($taken) - count($expected) . ' mails went out that have a fault';
        }
        if (array_sum($taken) - count($taken) > $duplicates) {
            yield array_sum($taken) - count($taken) . " mails went out twice, $duplicates may";
        }
        $failed = $mails - count($expected);
        $message = "$failed failed: Include block bad parameter 'offer': circle is detected in offers/postage.txt.tpl\n";
        if ($failed > 0 && !str_contains($this->output(), $message)) {
            yield 'the failures are not told: ' . $this->output();
        }
    }

    public function remove(): void
    {
        $this->runs() && proc_terminate($this->process) && $this->end();
        remove_tree($this->folder);
    }
}

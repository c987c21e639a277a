<?php

declare(strict_types=1);

namespace Bench;

/**
 * Whole requests through php-fpm: one after the other over one connection to one process. Engines take turns of some
 * hundred requests; before and after each turn the process is asked how much processor time it has taken.
 */
final class Requests
{
    private const WORKLOADS = ['page', 'mail', 'include'];
    private const ENDINGS = ['hand' => 'php', 'ours' => 'tpl', 'twig' => 'twig', 'smarty' => 'smarty'];
    private const ROUNDS = 15;
    private const REQUESTS_A_ROUND = 500;

    public function __construct(private readonly Settings $settings, private readonly int $seed)
    {
    }

    /** A table of what each engine takes beyond an empty request. */
    public function report(): string
    {
        $fpm = new Fpm($this->settings);
        $client = new FastCgi($fpm->socket);
        $requests = $this->requests();
        foreach (self::WORKLOADS as $workload) {
            $this->compare($client, $requests, $workload);
        }
        $times = [];
        for ($round = 0; $round < self::ROUNDS; $round++) {
            foreach ($requests as $name => $request) {
                $times[$name][] = $this->time($client, $request);
            }
        }
        $empty = Statistics::median($times['empty']);
        $rows = [];
        foreach (self::WORKLOADS as $workload) {
            $over = static fn (string $engine): string
                => Markdown::microseconds(Statistics::median($times["$workload $engine"]) - $empty);
            $rows[] = [$workload, ...\array_map($over, \array_keys(self::ENDINGS))];
        }
        $titles = \array_values(\array_intersect_key(SideBySide::ENGINES, self::ENDINGS));
        return Markdown::table(['µs over an empty request', ...$titles], $rows)
            . "\nThe empty request itself: " . Markdown::microseconds($empty) . " µs.\n";
    }

    /** @return array<string, string> the bytes to send, by "WORKLOAD ENGINE" and "empty" */
    private function requests(): array
    {
        $folder = self::folder();
        $requests = ['empty' => FastCgi::request("$folder/empty.php", [])];
        foreach (self::WORKLOADS as $name) {
            $workload = new Workload($name, $this->settings->scratch);
            // As a constant, which opcache keeps: making it is not what is measured.
            $data = $this->settings->scratch . "/$name.php";
            \file_put_contents($data, '<?php return ' . \var_export($workload->data($this->seed), true) . ';');
            foreach (self::ENDINGS as $engine => $ending) {
                $requests["$name $engine"] = FastCgi::request("$folder/$engine.php", [
                    'DATA' => $data,
                    'TEMPLATE' => $this->template($workload, $engine, $ending),
                    'AS_STRING' => $workload->isString ? '1' : '0',
                    'FOLDERS' => \implode(':', Workload::templateFolders($this->settings->scratch)),
                    'SCRATCH' => $this->settings->scratch,
                ]);
            }
        }
        return $requests;
    }

    /** What each engine wants to be told: a whole path, a name below its folders, or the text. */
    private function template(Workload $workload, string $engine, string $ending): string
    {
        $file = $workload->template($ending);
        return match (true) {
            $engine === 'hand' => $file,
            $workload->isString => ($engine === 'smarty' ? 'string:' : '') . \file_get_contents($file),
            $engine === 'ours' => $file,
            default => $workload->templateName($ending),
        };
    }

    /** Twice, for the first answer is that of a compiler. @param array<string, string> $requests */
    private function compare(FastCgi $client, array $requests, string $workload): void
    {
        $expected = $client->send($requests["$workload hand"]);
        foreach (\preg_grep("/^$workload /", \array_keys($requests)) as $name) {
            $client->send($requests[$name]);
            if ($client->send($requests[$name]) !== $expected || $expected === '') {
                throw new \RuntimeException("$name: not the answer of the hand-written template");
            }
        }
    }

    /** Nanoseconds of php-fpm's processor time for a request. */
    private function time(FastCgi $client, string $request): float
    {
        $clock = FastCgi::request(self::folder() . '/clock.php', []);
        $start = (int) $client->send($clock);
        for ($i = 0; $i < self::REQUESTS_A_ROUND; $i++) {
            $client->send($request);
        }
        return 1000 * ((int) $client->send($clock) - $start) / self::REQUESTS_A_ROUND;
    }

    private static function folder(): string
    {
        return \dirname(__DIR__) . '/requests';
    }
}

<?php
declare(strict_types=1);

require __DIR__ . '/../../bench/lib/FastCgi.php';

/** A process for each case. */
final class CommandLine
{
    public const NOTHING = 'variable';

    private ?int $base = null;

    public function __construct(private string $module)
    {
    }

    /** The options of PHP, here and in php-fpm. */
    public static function options(string $module, array $more = []): array
    {
        $options = ['-n'];
        // what the bombs are made with
        foreach (['simplexml', 'posix'] as $extension) {
            is_file(ini_get('extension_dir') . "/$extension.so") && array_push($options, '-d', "extension=$extension");
        }
        foreach (["extension=$module", ...$more] as $setting) {
            array_push($options, '-d', $setting);
        }
        return $options;
    }

    /** What a process holds that does nothing of note, in kB. */
    public function base(): int
    {
        return $this->base ??= $this->seen(self::NOTHING, '64M', [])['resident'];
    }

    public function restart(): void
    {
    }

    public function stop(): void
    {
    }

    /** @return array<string, mixed> what the case tells of itself, or how it died */
    public function seen(string $case, string $limit, array $special): array
    {
        $limits = 'ulimit -v 8000000; ulimit -n ' . ($special['files'] ?? 1024) . '; ulimit -s ' . ($special['stack'] ?? 8192);
        $command = ['timeout', '-s', 'KILL', '120', PHP_BINARY, ...self::options($this->module, $special['settings'] ?? []), __DIR__ . '/case.php', $case, $limit];
        $process = proc_open(['sh', '-c', "$limits; exec \"\$@\"", 'sh', ...$command], [1 => ['pipe', 'w'], 2 => ['redirect', 1]], $pipes);
        $output = stream_get_contents($pipes[1]);
        $status = proc_close($process);
        // 255: a fatal error
        return in_array($status, [0, 255], true)
            ? self::answer($output)
            : ['died' => $status > 128 ? 'signal ' . $status - 128 : "status $status"] + self::answer($output);
    }

    public static function answer(string $output): array
    {
        return json_decode(substr(rtrim($output), (int) strrpos(rtrim($output), "\n")), true) ?? ['died' => 'no answer: ' . substr($output, -200)];
    }
}

/** One worker of php-fpm, which must answer all of them. */
final class Worker
{
    private static int $started = 0;
    private int $base;
    private ?Bench\FastCgi $client = null;
    private string $place;
    /** @var resource */
    private $master;

    public static function exists(): bool
    {
        return is_executable(self::program());
    }

    private static function program(): string
    {
        return dirname(PHP_BINARY, 2) . '/sbin/php-fpm' . PHP_MAJOR_VERSION . '.' . PHP_MINOR_VERSION;
    }

    public function __construct(private string $module, private array $settings = [])
    {
        $this->start();
        $this->base = $this->ask(CommandLine::NOTHING, '64M')['resident'];
    }

    private function start(): void
    {
        $this->place = sys_get_temp_dir() . '/template-limits-' . getmypid() . '-' . self::$started++;
        file_put_contents("$this->place.conf", "[global]\nerror_log = $this->place.log\n[limits]\nlisten = $this->place.sock\npm = static\npm.max_children = 1\nuser = root\n");
        $command = [self::program(), '-F', '-R', '-y', "$this->place.conf", ...CommandLine::options($this->module, $this->settings)];
        $this->master = proc_open($command, [2 => ['file', '/dev/null', 'w']], $pipes);
        for ($tries = 0; !file_exists("$this->place.sock") && $tries < 500; $tries++) {
            usleep(10000);
        }
    }

    public function stop(): void
    {
        $this->client = null;
        proc_terminate($this->master);
        proc_close($this->master);
        array_map(unlink(...), glob("$this->place.*"));
    }

    public function restart(): void
    {
        $this->stop();
        $this->start();
    }

    public function base(): int
    {
        return $this->base;
    }

    public function seen(string $case, string $limit, array $special): array
    {
        $before = $this->ask(CommandLine::NOTHING, $limit);
        for ($times = $special['times'] ?? 1; $times > 0; $times--) {
            $seen = $this->ask($case, $limit);
        }
        $next = $this->ask(CommandLine::NOTHING, $limit);
        $died = ($before['process'] ?? 0) !== ($next['process'] ?? 0);
        return ($died ? ['died' => $seen['died'] ?? 'the worker is another'] : []) + $seen;
    }

    public function ask(string $case, string $limit): array
    {
        try {
            $this->client ??= new Bench\FastCgi("$this->place.sock", 60);
            return CommandLine::answer($this->client->send(Bench\FastCgi::request(__DIR__ . '/case.php', ['NAME' => $case, 'LIMIT' => $limit])));
        } catch (RuntimeException $exception) {
            $this->client = null;
            return ['died' => $exception->getMessage()];
        }
    }
}

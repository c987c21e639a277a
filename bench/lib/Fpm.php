<?php

declare(strict_types=1);

namespace Bench;

/** A php-fpm of our own with a single process, on a socket of our own; it ends with this object. */
final class Fpm
{
    /** Not below the scratch folder: the name of a socket must be short. */
    public readonly string $socket;

    /** @var resource */
    private $process;

    public function __construct(Settings $settings)
    {
        $this->socket = \sys_get_temp_dir() . '/template-bench-' . \getmypid() . '.sock';
        $configuration = $settings->scratch . '/fpm.conf';
        $log = $settings->scratch . '/fpm.log';
        \file_put_contents($configuration, <<<INI
            [global]
            error_log = "$log"
            daemonize = no
            [bench]
            listen = $this->socket
            pm = static
            pm.max_children = 1
            catch_workers_output = yes
            INI);
        $command = [
            ...Processes::onOneCore(),
            self::program($settings),
            ...(\posix_geteuid() === 0 ? ['--allow-to-run-as-root'] : []),
            '--nodaemonize',
            '--fpm-config',
            $configuration,
            ...$settings->options(),
        ];
        if (\posix_geteuid() === 0) {
            \file_put_contents($configuration, "\nuser = root\n", \FILE_APPEND);
        }
        $this->process = \proc_open($command, [['file', '/dev/null', 'r'], \STDERR, ['file', $log, 'a']], $pipes);
        for ($tries = 0; !\file_exists($this->socket); $tries++) {
            if ($tries === 500 || !\proc_get_status($this->process)['running']) {
                throw new \RuntimeException('php-fpm does not start: ' . \file_get_contents($log));
            }
            \usleep(10_000);
        }
    }

    public function __destruct()
    {
        \proc_terminate($this->process);
        \proc_close($this->process);
        if (\file_exists($this->socket)) {
            \unlink($this->socket);
        }
    }

    /** php-fpm lies beside the php that we run, under the same version. */
    private static function program(Settings $settings): string
    {
        $php = \realpath($settings->php);
        $version = \PHP_MAJOR_VERSION . '.' . \PHP_MINOR_VERSION;
        foreach (["php-fpm$version", 'php-fpm'] as $name) {
            $file = \dirname($php, 2) . "/sbin/$name";
            if (\is_executable($file)) {
                return $file;
            }
        }
        throw new \RuntimeException("There is no php-fpm $version in " . \dirname($php, 2) . '/sbin');
    }
}

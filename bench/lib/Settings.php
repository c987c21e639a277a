<?php

declare(strict_types=1);

namespace Bench;

/** What every run is made with: the PHP to use, the built module, a folder for what is compiled on the way. */
final class Settings
{
    private const INI = [
        'memory_limit' => '4G',
        'display_errors' => 'stderr',
        'output_buffering' => '0',
        'default_charset' => 'UTF-8',
        'opcache.enable' => '1',
        'opcache.enable_cli' => '1',
        'opcache.memory_consumption' => '128',
        // Peers at their best: no file is looked at twice.
        'opcache.validate_timestamps' => '0',
        // Else a compiled template would not be taken in during its first two seconds.
        'opcache.file_update_protection' => '0',
        'opcache.jit' => 'disable',
        'ffi.enable' => '1',
    ];

    /** @var resource held until the end */
    private $lock;

    public function __construct(
        public readonly string $php,
        public readonly string $module,
        public readonly string $scratch,
    ) {
    }

    /** From the variables that ./dev sets. */
    public static function fromEnvironment(): self
    {
        $module = (string) \getenv('TEMPLATE_SO');
        if (!\is_file($module)) {
            throw new \RuntimeException('The extension is not built: TEMPLATE_SO names no file');
        }
        $build = \getenv('BUILD') ?: \dirname($module);
        return new self(\getenv('PHP') ?: \PHP_BINARY, $module, $build . '/bench');
    }

    /**
     * The settings as PHP takes them on its command line. JIT can only be chosen here: not while PHP runs.
     *
     * @return list<string>
     */
    public function options(bool $jit = false): array
    {
        $ini = self::INI;
        $ini['include_path'] = \implode(':', Workload::templateFolders($this->scratch));
        $ini['extension'] = $this->module;
        if ($jit) {
            $ini['opcache.jit'] = 'tracing';
            $ini['opcache.jit_buffer_size'] = '64M';
        }
        $options = [];
        foreach ($ini as $name => $value) {
            \array_push($options, '-d', "$name=$value");
        }
        return $options;
    }

    /** Empties the folder of compiled templates and writes the templates; one run at a time. */
    public function prepare(): void
    {
        $this->lock = \fopen($this->scratch . '.lock', 'ce');
        if (!\flock($this->lock, \LOCK_EX | \LOCK_NB)) {
            Processes::say('waiting for another run to end');
            \flock($this->lock, \LOCK_EX);
        }
        self::remove($this->scratch);
        \mkdir($this->scratch, 0o777, true);
        Workload::write($this->scratch);
        Native::build($this->scratch);
    }

    private static function remove(string $path): void
    {
        if (\is_link($path) || \is_file($path)) {
            \unlink($path);
        } elseif (\is_dir($path)) {
            foreach (\array_diff(\scandir($path), ['.', '..']) as $name) {
                self::remove("$path/$name");
            }
            \rmdir($path);
        }
    }
}

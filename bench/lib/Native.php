<?php

declare(strict_types=1);

namespace Bench;

/** The functions of native.cpp. */
final class Native
{
    private const FUNCTIONS = 'void read_files(const char *names, int count); void begin_count(void);'
        . ' void end_count(const char *name);';

    public static function build(string $scratch): void
    {
        $source = \dirname(__DIR__) . '/native.cpp';
        Processes::run(['g++', '-O2', '-shared', '-fPIC', '-o', "$scratch/native.so", $source], "$scratch/native.log");
    }

    public static function load(string $scratch): \FFI
    {
        return \FFI::cdef(self::FUNCTIONS, "$scratch/native.so");
    }
}

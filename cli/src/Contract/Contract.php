<?php

declare(strict_types=1);

namespace TemplateCli\Contract;

use TemplateCli\Language\Fault;
use TemplateCli\Language\Place;
use TemplateCli\Language\Scan;
use TemplateCli\Language\Scanner;

/** All that templates ask of their data. */
final class Contract
{
    public readonly Shape $root;
    /** @var array<string, Place> what includes by a name from the data, or references to sections of others, leave open */
    public array $unknown = [];
    /** @var array<string, true> the references of "!optional" tags, as they are written */
    public array $handled = [];
    /** @var array<string, Fault> */
    public array $faults = [];

    public function __construct()
    {
        $this->root = new Shape();
    }

    /** @return ?self null when the file cannot be opened */
    public static function ofFile(string $name): ?self
    {
        $scan = new Scanner()->scanFile($name);

        return $scan === null ? null : self::of($scan);
    }

    public static function of(Scan ...$scans): self
    {
        $contract = new self();
        foreach ($scans as $scan) {
            $contract->faults += $scan->faults;
            new Collector($contract)->file($scan);
        }

        return $contract;
    }

    /** @return array<string, array<string, true>> for a path of the data, the keys of it that tags name */
    public function named(): array
    {
        $named = [];
        self::collect($this->root, [], $named);

        return $named;
    }

    /**
     * @param list<string> $path
     * @param array<string, array<string, true>> $named
     */
    private static function collect(Shape $shape, array $path, array &$named): void
    {
        if ($shape->keys !== []) {
            $named[implode('::', $path)] = array_fill_keys(array_keys($shape->keys), true);
        }
        foreach ($shape->keys as $key => $inner) {
            self::collect($inner, [...$path, (string) $key], $named);
        }
        if ($shape->element !== null) {
            self::collect($shape->element, [...$path, '*'], $named);
        }
    }
}

<?php

declare(strict_types=1);

namespace Bench\engines;

use Bench\Engine;
use Bench\Workload;
use Twig\Environment;
use Twig\Loader\FilesystemLoader;

/** Twig in its fastest form: yield mode, compiled templates kept and not looked after, no automatic escaping. */
final class Twig implements Engine
{
    private const LIBRARY = '/usr/share/php/Twig/autoload.php';

    private readonly Environment $twig;
    private readonly string $source;
    private readonly bool $isString;

    public static function version(): string
    {
        require_once self::LIBRARY;
        return Environment::VERSION;
    }

    /** @param array<string, mixed> $data */
    public function __construct(Workload $workload, private readonly array $data, string $scratch)
    {
        require_once self::LIBRARY;
        $this->twig = new Environment(new FilesystemLoader(Workload::templateFolders($scratch)), [
            'cache' => $scratch . '/twig',
            'auto_reload' => false,
            'autoescape' => false,
            'use_yield' => true,
        ]);
        $this->isString = $workload->isString;
        $this->source = $workload->isString
            ? \file_get_contents($workload->template('twig'))
            : $workload->templateName('twig');
    }

    public function render(): string
    {
        return $this->isString
            ? $this->twig->createTemplate($this->source)->render($this->data)
            : $this->twig->render($this->source, $this->data);
    }
}

<?php

declare(strict_types=1);

namespace Bench\engines;

use Bench\Engine;
use Bench\Workload;
use Smarty as Library;

/** Smarty with compiled templates kept and not looked after, no caching of output, no automatic escaping. */
final class Smarty implements Engine
{
    private const LIBRARY = '/usr/share/php/smarty4/Smarty.class.php';

    private readonly Library $smarty;
    private readonly string $source;

    public static function version(): string
    {
        require_once self::LIBRARY;
        return Library::SMARTY_VERSION;
    }

    /** @param array<string, mixed> $data */
    public function __construct(Workload $workload, private readonly array $data, string $scratch)
    {
        require_once self::LIBRARY;
        $this->smarty = new Library();
        $this->smarty->setTemplateDir(Workload::templateFolders($scratch));
        $this->smarty->setCompileDir($scratch . '/smarty');
        $this->smarty->setCompileCheck(Library::COMPILECHECK_OFF);
        $this->source = $workload->isString
            ? 'string:' . \file_get_contents($workload->template('smarty'))
            : $workload->templateName('smarty');
    }

    public function render(): string
    {
        $template = $this->smarty->createTemplate($this->source);
        $template->assign($this->data);
        return $template->fetch();
    }
}

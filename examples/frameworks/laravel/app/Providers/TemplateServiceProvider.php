<?php

declare(strict_types=1);

namespace App\Providers;

use App\View\TemplateEngine;
use Illuminate\Support\ServiceProvider;

/** Makes views of all files that end in .html.tpl: view('books') renders books.html.tpl. */
final class TemplateServiceProvider extends ServiceProvider
{
    public function boot(): void
    {
        $this->app['view']->addExtension('html.tpl', 'template', fn () => new TemplateEngine($this->app['config']['view.paths']));
    }
}

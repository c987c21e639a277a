<?php
/** The adapter for Laravel with the framework's own view, event and file components. */

declare(strict_types=1);

use App\Providers\TemplateServiceProvider;
use Illuminate\Container\Container;
use Illuminate\Events\EventServiceProvider;
use Illuminate\Filesystem\Filesystem;
use Illuminate\View\Factory;
use Illuminate\View\ViewServiceProvider;

require_once 'Illuminate/View/autoload.php';

function laravel_views(array $templates = []): Factory
{
    $project = scratch_copy('examples/frameworks/laravel', $templates);
    require_once "examples/frameworks/laravel/app/View/TemplateEngine.php";
    require_once "examples/frameworks/laravel/app/Providers/TemplateServiceProvider.php";

    $app = new class extends Container {
        /** Of a whole application; nothing comes to its end here. */
        public function terminating(callable $callback): void
        {
        }
    };
    $app['config'] = ['view.paths' => ["$project/resources/views"], 'view.compiled' => "$project/compiled"];
    $app['files'] = new Filesystem();
    (new EventServiceProvider($app))->register();
    (new ViewServiceProvider($app))->register();
    (new TemplateServiceProvider($app))->boot();
    return $app['view'];
}

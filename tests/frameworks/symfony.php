<?php
/** The adapter for Symfony in a whole kernel, with routing, autowiring and an error of each kind. */

declare(strict_types=1);

use App\Controller\BookController;
use App\View\TemplateView;
use Symfony\Bundle\FrameworkBundle\FrameworkBundle;
use Symfony\Bundle\FrameworkBundle\Kernel\MicroKernelTrait;
use Symfony\Component\DependencyInjection\Loader\Configurator\ContainerConfigurator;
use Symfony\Component\HttpFoundation\Request;
use Symfony\Component\HttpFoundation\Response;
use Symfony\Component\HttpKernel\Kernel;
use Symfony\Component\Routing\Loader\Configurator\RoutingConfigurator;

foreach (['Bundle/FrameworkBundle', 'Component/HttpKernel', 'Component/Routing', 'Component/DependencyInjection'] as $part) {
    require_once "Symfony/$part/autoload.php";
}

/** What composer would know of a project. Here Debian's packages are all there is, and all of it may be used. */
class_alias((new class {
    public static function isInstalled(string $package, bool $development = true): bool
    {
        return false;
    }
})::class, 'Composer\InstalledVersions');

function symfony_book_page(string $path, array $templates = []): Response
{
    static $runs = 0;
    $project = scratch_copy('examples/frameworks/symfony', $templates);
    require_once "examples/frameworks/symfony/src/View/TemplateView.php";
    require_once "examples/frameworks/symfony/src/Controller/BookController.php";

    $kernel = new class("run" . $runs++, $project) extends Kernel {
        use MicroKernelTrait;

        public function __construct(string $environment, private readonly string $project)
        {
            parent::__construct($environment, false);
        }

        public function getProjectDir(): string
        {
            return $this->project;
        }

        public function registerBundles(): iterable
        {
            yield new FrameworkBundle();
        }

        private function configureContainer(ContainerConfigurator $container): void
        {
            $container->extension('framework', ['secret' => 's', 'http_method_override' => false, 'test' => true]);
            $services = $container->services()->defaults()->autowire()->autoconfigure();
            $services->set(TemplateView::class);
            $services->set(BookController::class)->tag('controller.service_arguments')->public();
            $services->set('logger', Psr\Log\NullLogger::class);
        }

        private function configureRoutes(RoutingConfigurator $routes): void
        {
            $routes->add('books', '/books/{tag}')->controller([BookController::class, 'list']);
        }
    };
    return $kernel->handle(Request::create($path), catch: false);
}

<?php

declare(strict_types=1);

namespace TemplateCli\Command;

use Symfony\Component\Console\Command\Command;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Input\InputOption;
use Symfony\Component\Console\Output\ConsoleOutputInterface;
use Symfony\Component\Console\Output\OutputInterface;
use TemplateCli\Json;
use TemplateCli\Render\Assignments;
use TemplateCli\UsageError;

/** What the commands have in common. */
abstract class TemplateCommand extends Command
{
    protected function configure(): void
    {
        $this->addOption(
            'include-path',
            'I',
            InputOption::VALUE_REQUIRED | InputOption::VALUE_IS_ARRAY,
            'A folder in which templates and includes are looked for',
        );
    }

    protected function initialize(InputInterface $input, OutputInterface $output): void
    {
        $folders = $input->getOption('include-path');
        if ($folders !== []) {
            set_include_path(implode(PATH_SEPARATOR, [...$folders, get_include_path()]));
        }
    }

    protected function addDataOptions(): void
    {
        $many = InputOption::VALUE_REQUIRED | InputOption::VALUE_IS_ARRAY;
        $this
            ->addOption('set', 's', $many, 'key=value adds to the data; keys as in a template: user::name=Ann')
            ->addOption('set-json', null, $many, 'The same with a JSON value: rows=[1,2]');
    }

    /**
     * What the data options say, on top of what a file says.
     *
     * @return array<mixed>
     */
    protected static function data(InputInterface $input, ?string $file): array
    {
        $data = $file === null ? [] : self::dataFrom($file);

        return Assignments::apply($data, $input->getOption('set'), $input->getOption('set-json'));
    }

    protected static function errors(OutputInterface $output): OutputInterface
    {
        return $output instanceof ConsoleOutputInterface ? $output->getErrorOutput() : $output;
    }

    /** @param bool $always not even --quiet silences it */
    protected static function complain(OutputInterface $output, string $message, bool $always = false): void
    {
        $verbosity = $always ? OutputInterface::VERBOSITY_QUIET : OutputInterface::VERBOSITY_NORMAL;
        self::errors($output)->writeln($message, OutputInterface::OUTPUT_RAW | $verbosity);
    }

    /**
     * The user data in a JSON file, or on standard input for "-".
     *
     * @return array<mixed>
     */
    protected static function dataFrom(string $file): array
    {
        $json = @file_get_contents($file === '-' ? 'php://stdin' : $file);
        $what = $file === '-' ? 'standard input' : $file;
        if ($json === false) {
            throw new UsageError("Could not read the data in $what.");
        }
        try {
            return Json::data($json);
        } catch (\JsonException $exception) {
            throw new UsageError("The data in $what is not a JSON object or list: {$exception->getMessage()}.");
        }
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Command;

use Symfony\Component\Console\Command\Command;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Input\InputOption;
use Symfony\Component\Console\Output\ConsoleOutputInterface;
use Symfony\Component\Console\Output\OutputInterface;
use TemplateCli\Json;
use TemplateCli\Project;
use TemplateCli\Render\Assignments;
use TemplateCli\Result;
use TemplateCli\StandardInput;
use TemplateCli\UsageError;

/** What the commands have in common. */
abstract class TemplateCommand extends Command
{
    protected Project $project;
    /** @var list<string> what the command line and PHP say, without the project */
    private array $includePath;

    protected function configure(): void
    {
        $this->addOption(
            'include-path',
            'I',
            InputOption::VALUE_REQUIRED | InputOption::VALUE_IS_ARRAY,
            'A folder in which templates and includes are looked for',
        );
        $this->addOption('project', null, InputOption::VALUE_REQUIRED, 'The project file, instead of the nearest template.json');
    }

    protected function initialize(InputInterface $input, OutputInterface $output): void
    {
        $this->includePath = array_filter([...$input->getOption('include-path'), get_include_path()]);
        $template = $input->hasArgument('template') ? $input->getArgument('template') : null;
        $this->enter($this->projectOf($input, is_array($template) ? $template[0] : $template ?? '.'));
    }

    protected function projectOf(InputInterface $input, string $path): Project
    {
        $file = $input->getOption('project');

        return $file === null ? Project::around($path) : Project::read($file);
    }

    /** Templates are looked for where this project says, too. */
    protected function enter(Project $project): void
    {
        $this->project = $project;
        $own = array_slice($this->includePath, 0, -1);
        set_include_path(implode(PATH_SEPARATOR, [...$own, ...$project->includePath, ...array_slice($this->includePath, -1)]));
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

    /** Not even --quiet silences the result: it is all that a command is for. */
    protected static function result(OutputInterface $output, string $bytes): void
    {
        $output instanceof ConsoleOutputInterface
            ? Result::write($bytes)
            : $output->write($bytes, false, OutputInterface::OUTPUT_RAW | OutputInterface::VERBOSITY_QUIET);
    }

    /** @param string $what in the singular */
    protected static function count(int $count, string $what): string
    {
        return $count === 1 ? "1 $what" : "$count {$what}s";
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
        $what = $file === '-' ? 'standard input' : $file;
        $json = $file === '-' ? StandardInput::read() : @file_get_contents($file);
        if ($json === false) {
            throw new UsageError("Could not read the data in $what.");
        }

        return self::decoded($json, $what);
    }

    /** @return array<mixed> */
    protected static function decoded(string $json, string $what): array
    {
        try {
            return Json::data($json);
        } catch (\JsonException $exception) {
            // Of a row, which has its own line, the column is enough.
            $why = str_starts_with($what, 'line ')
                ? str_replace(' at line 1, ', ' at ', $exception->getMessage())
                : $exception->getMessage();
            throw new UsageError("The data in $what is not a JSON object or list: $why.");
        }
    }
}

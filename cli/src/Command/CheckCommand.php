<?php

declare(strict_types=1);

namespace TemplateCli\Command;

use Symfony\Component\Console\Attribute\AsCommand;
use Symfony\Component\Console\Input\InputArgument;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Input\InputOption;
use Symfony\Component\Console\Output\OutputInterface;
use TemplateCli\Batch\RowReader;
use TemplateCli\Check\Checker;
use TemplateCli\Check\Rule;
use TemplateCli\Engine;
use TemplateCli\Extension;
use TemplateCli\Language\Files;
use TemplateCli\Lint\Format;
use TemplateCli\Render\Assignments;
use TemplateCli\UsageError;

#[AsCommand('check', 'Holds data against a template: names that are missing, values that print nothing')]
final class CheckCommand extends TemplateCommand
{
    protected function configure(): void
    {
        parent::configure();
        $this->getDefinition()->addOption(Format::option());
        $this->addDataOptions();
        $rules = array_map(static fn (Rule $rule): string => "  $rule->value: {$rule->summary()}", Rule::cases());
        $this
            ->addArgument('template', InputArgument::REQUIRED, 'The template file')
            ->addArgument('data', InputArgument::IS_ARRAY, 'JSON files with the data, - for standard input; else what the project file names')
            ->addOption('rows', null, InputOption::VALUE_NONE, 'Each line of the files is the data of a page of its own, as for batch')
            ->addOption('render', null, InputOption::VALUE_NONE, 'Render as well, and report what template() says')
            ->addOption('notes', null, InputOption::VALUE_NONE, 'Also what is hardly ever a mistake: data that no tag asks for, null and false that print nothing')
            ->addOption(
                'ignore',
                null,
                InputOption::VALUE_REQUIRED | InputOption::VALUE_IS_ARRAY,
                'Leave findings of a kind out',
                [],
                array_column(Rule::cases(), 'value'),
            )
            ->setHelp(
                "Writes one line for each finding: the place in the template, the data's file, the path in the data.\n"
                . "The exit status is 0 without findings, 1 with findings, 2 when the command itself is wrong.\n\nThe findings:\n"
                . implode("\n", $rules),
            );
    }

    protected function execute(InputInterface $input, OutputInterface $output): int
    {
        $format = Format::of($input->getOption('format'));
        $template = $input->getArgument('template');
        if (Files::read($template) === null) {
            throw new UsageError("Could not open file $template.");
        }
        !$input->getOption('render') ?: Extension::need();
        $checker = new Checker($template, $input->getOption('render') ? new Engine() : null, $input->getOption('notes'), self::ignored($input));
        foreach ($this->sources($input, $template) as $source => $data) {
            $checker->check(Assignments::apply($data, $input->getOption('set'), $input->getOption('set-json')), $source);
        }
        $report = $checker->report();
        self::result($output, $format->write($report));
        $summary = self::count($report->files, 'set') . ' of data, ' . self::count($report->faults(), 'finding')
            . ($checker->more === 0 ? '' : ", and $checker->more more like them")
            . ($input->getOption('notes') ? ', ' . self::count($report->hints(), 'note') : '');
        self::complain($output, "$summary.");

        return $report->faults() > 0 ? self::FAILURE : self::SUCCESS;
    }

    /** @return list<Rule> */
    private static function ignored(InputInterface $input): array
    {
        return array_map(
            static fn (string $name): Rule => Rule::tryFrom($name)
                ?? throw new UsageError("There is no finding \"$name\"; \"template help check\" lists them."),
            $input->getOption('ignore'),
        );
    }

    /** @return \Generator<string, array<mixed>> data by where they are from */
    private function sources(InputInterface $input, string $template): \Generator
    {
        $files = $input->getArgument('data') ?: $this->project->dataFor($template);
        if ($files === []) {
            $input->getOption('set') !== [] || $input->getOption('set-json') !== []
                ? yield '' => []
                : throw new UsageError('Give the data: JSON files, or - for standard input.');
        }
        foreach ($files as $file) {
            $name = $file === '-' ? 'standard input' : $file;
            if (!$input->getOption('rows')) {
                yield $name => self::dataFrom($file);
                continue;
            }
            $rows = new RowReader($file);
            while (($row = $rows->next()) !== null) {
                yield "$name:$rows->lines" => self::decoded($row, "line $rows->lines of $name");
            }
        }
    }
}

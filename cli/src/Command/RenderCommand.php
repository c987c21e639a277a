<?php

declare(strict_types=1);

namespace TemplateCli\Command;

use Symfony\Component\Console\Attribute\AsCommand;
use Symfony\Component\Console\Input\InputArgument;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Input\InputOption;
use Symfony\Component\Console\Output\OutputInterface;
use TemplateCli\AtomicFile;
use TemplateCli\Check;
use TemplateCli\Engine;
use TemplateCli\Extension;
use TemplateCli\Lint\Finding;
use TemplateCli\Render\Watch;
use TemplateCli\UsageError;

#[AsCommand('render', 'Renders one template')]
final class RenderCommand extends TemplateCommand
{
    protected function configure(): void
    {
        parent::configure();
        $this->addDataOptions();
        $this
            ->addArgument('template', InputArgument::OPTIONAL, 'The template file')
            ->addArgument('data', InputArgument::OPTIONAL, 'A JSON file with the data, or - for standard input')
            ->addOption('string', null, InputOption::VALUE_REQUIRED, 'The template text itself, instead of a file')
            ->addOption('output', 'o', InputOption::VALUE_REQUIRED, 'The file to write, as a whole or not at all')
            ->addOption('strict', null, InputOption::VALUE_NONE, 'Refuse to print a page of which "check" finds something')
            ->addOption(
                'watch',
                'w',
                InputOption::VALUE_NONE,
                'Render again whenever the template, an include or the data changes',
            )
            ->setHelp(
                "Writes the result, and nothing else, to standard output or to a file.\n"
                . 'The exit status is 1 when the template fails; its warning is on standard error.',
            );
    }

    protected function execute(InputInterface $input, OutputInterface $output): int
    {
        Extension::need();
        [$template, $data] = [$input->getArgument('template'), $input->getArgument('data')];
        $text = $input->getOption('string');
        if ($text !== null) {
            $data === null ?: throw new UsageError('With --string, give the data alone.');
            [$template, $data] = [$text, $template];
        }
        $template ?? throw new UsageError('Give a template file, or its text with --string.');
        if ($input->getOption('output') === '') {
            throw new UsageError('--output needs the name of a file.');
        }
        if (!$input->getOption('watch')) {
            return $this->render($input, $output, $template, $data);
        }
        if ($data === '-') {
            throw new UsageError('Standard input cannot be watched; give the data as a file.');
        }
        $this->watch($input, $output, $template, $data);
    }

    private function render(InputInterface $input, OutputInterface $output, string $template, ?string $dataFile): int
    {
        $data = self::data($input, $dataFile);
        $isText = $input->getOption('string') !== null;
        if ($input->getOption('strict')) {
            $problems = new Check($isText ? '--string' : $template, $isText ? $template : null, isDecoded: true)->problems($data);
            foreach ($problems as $problem) {
                self::complain($output, Finding::ofProblem($problem, '')->line(), always: true);
            }
            if ($problems !== []) {
                return self::FAILURE;
            }
        }
        $outcome = new Engine()->render($template, $data, $isText);
        foreach ($outcome->notices as $notice) {
            self::complain($output, "PHP: $notice");
        }
        if ($outcome->result === null) {
            self::complain($output, $outcome->fault, always: true);

            return self::FAILURE;
        }
        if ($input->getOption('output') !== null) {
            AtomicFile::replace($input->getOption('output'), $outcome->result);
        } else {
            self::result($output, $outcome->result);
        }

        return self::SUCCESS;
    }

    private function watch(InputInterface $input, OutputInterface $output, string $template, ?string $dataFile): never
    {
        $watch = new Watch(
            $template,
            $input->getOption('string') !== null,
            $dataFile,
            static fn (): array => self::data($input, $dataFile),
        );
        while (true) {
            $start = hrtime(true);
            try {
                $status = $this->render($input, $output, $template, $dataFile);
            } catch (UsageError $error) {
                self::complain($output, $error->getMessage());
                $status = self::FAILURE;
            }
            self::complain($output, sprintf(
                '[%s] %s in %.1f ms; waiting for a change (Ctrl-C ends)',
                date('H:i:s'),
                $status === self::SUCCESS ? 'rendered' : 'failed',
                (hrtime(true) - $start) / 1e6,
            ));
            $watch->waitForChange();
        }
    }
}

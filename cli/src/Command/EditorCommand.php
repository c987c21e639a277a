<?php

declare(strict_types=1);

namespace TemplateCli\Command;

use Symfony\Component\Console\Attribute\AsCommand;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Input\InputOption;
use Symfony\Component\Console\Output\OutputInterface;
use TemplateCli\Editor\Session;
use TemplateCli\Project;

#[AsCommand('editor', 'Answers an editor about the texts that are written in it')]
final class EditorCommand extends TemplateCommand
{
    protected function configure(): void
    {
        parent::configure();
        $this
            ->addOption(
                'allow-raw',
                null,
                InputOption::VALUE_REQUIRED | InputOption::VALUE_IS_ARRAY,
                'References that may be printed raw in HTML, as a pattern such as "*_html"',
            )
            ->setHelp(
                "The language server keeps this running, and so saves the start of a process with each key.\n"
                . "Each line of standard input is a JSON object with the name of a file and its text, each line\n"
                . 'of standard output one with the "findings" of lint and with the "tags" of the text.',
            );
    }

    protected function execute(InputInterface $input, OutputInterface $output): int
    {
        $write = static fn (string $line) => $output->write($line, false, OutputInterface::OUTPUT_RAW);
        $projectOf = function (string $name) use ($input): Project {
            $this->enter($this->projectOf($input, $name));

            return $this->project;
        };
        new Session($input->getOption('allow-raw'), $projectOf)->run(STDIN, $write);

        return self::SUCCESS;
    }
}

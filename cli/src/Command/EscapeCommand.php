<?php

declare(strict_types=1);

namespace TemplateCli\Command;

use Symfony\Component\Console\Attribute\AsCommand;
use Symfony\Component\Console\Input\InputArgument;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Output\OutputInterface;
use TemplateCli\Language\Literal;
use TemplateCli\StandardInput;
use TemplateCli\UsageError;

#[AsCommand('escape', 'Makes a template of a text, which prints it byte for byte')]
final class EscapeCommand extends TemplateCommand
{
    protected function configure(): void
    {
        parent::configure();
        $this
            ->addArgument('file', InputArgument::OPTIONAL, 'A style sheet, a script, JSON, a page; - or nothing for standard input', '-')
            ->setHelp('Doubles the braces that would not be printed as they are, and leaves the others alone.');
    }

    protected function execute(InputInterface $input, OutputInterface $output): int
    {
        $file = $input->getArgument('file');
        $text = $file === '-' ? StandardInput::read() : @file_get_contents($file);
        if ($text === false || is_dir($file)) {
            throw new UsageError("Could not read $file.");
        }
        self::result($output, Literal::escape($text));

        return self::SUCCESS;
    }
}

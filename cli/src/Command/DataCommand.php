<?php

declare(strict_types=1);

namespace TemplateCli\Command;

use Symfony\Component\Console\Attribute\AsCommand;
use Symfony\Component\Console\Input\InputArgument;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Input\InputOption;
use Symfony\Component\Console\Output\OutputInterface;
use TemplateCli\Contract\Contract;
use TemplateCli\Contract\Format;
use TemplateCli\Language\Fault;
use TemplateCli\Language\Scan;
use TemplateCli\Language\Scanner;
use TemplateCli\UsageError;

#[AsCommand('data', 'Lists the data that templates ask for')]
final class DataCommand extends TemplateCommand
{
    protected function configure(): void
    {
        parent::configure();
        $this
            ->addArgument('template', InputArgument::REQUIRED | InputArgument::IS_ARRAY, 'Template files')
            ->addOption(
                'format',
                'f',
                InputOption::VALUE_REQUIRED,
                'tree, json, json-schema, phpdoc or sample',
                'tree',
                array_column(Format::cases(), 'value'),
            )
            ->setHelp(
                "Follows the includes, and tells for each name what it is used as, and where.\n"
                . "The formats are a tree to read, <info>json</info> with all of it, <info>json-schema</info> for validators,\n"
                . '<info>phpdoc</info> with an array shape for @param, and <info>sample</info>, data to fill in.',
            );
    }

    protected function execute(InputInterface $input, OutputInterface $output): int
    {
        $format = Format::tryFrom($input->getOption('format'))
            ?? throw new UsageError('The format is one of tree, json, json-schema, phpdoc and sample.');
        $scanner = new Scanner();
        $contract = Contract::of(...array_map(
            static fn (string $name): Scan => $scanner->scanFile($name) ?? throw new UsageError("Could not open file $name."),
            $input->getArgument('template'),
        ));
        self::result($output, $format->write($contract));
        $faults = array_filter($contract->faults, static fn (Fault $fault): bool => !$fault->dependsOnData);
        foreach ($faults as $fault) {
            self::complain($output, "$fault->place: $fault->message", always: true);
        }

        return $faults === [] ? self::SUCCESS : self::FAILURE;
    }
}

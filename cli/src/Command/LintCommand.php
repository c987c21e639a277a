<?php

declare(strict_types=1);

namespace TemplateCli\Command;

use Symfony\Component\Console\Attribute\AsCommand;
use Symfony\Component\Console\Input\InputArgument;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Input\InputOption;
use Symfony\Component\Console\Output\OutputInterface;
use TemplateCli\Engine;
use TemplateCli\Language\HintKind;
use TemplateCli\Lint\FileFinder;
use TemplateCli\Lint\Format;
use TemplateCli\Lint\Linter;
use TemplateCli\Lint\Report;
use TemplateCli\UsageError;

#[AsCommand('lint', 'Checks templates and tells the place of every fault')]
final class LintCommand extends TemplateCommand
{
    protected function configure(): void
    {
        parent::configure();
        $names = array_column(HintKind::cases(), 'value');
        $hints = array_map(static fn (HintKind $kind): string => "  $kind->value: {$kind->summary()}", HintKind::cases());
        $this
            ->addArgument(
                'path',
                InputArgument::REQUIRED | InputArgument::IS_ARRAY,
                'Files, and folders with all that is in them',
            )
            ->addOption(
                'name',
                null,
                InputOption::VALUE_REQUIRED | InputOption::VALUE_IS_ARRAY,
                'In folders, only files whose name matches this pattern, such as "*.tpl"',
            )
            ->addOption(
                'format',
                'f',
                InputOption::VALUE_REQUIRED,
                'text, json, github or checkstyle',
                'text',
                array_column(Format::cases(), 'value'),
            )
            ->addOption('no-hints', null, InputOption::VALUE_NONE, 'Report faults only')
            ->addOption(
                'no-hint',
                null,
                InputOption::VALUE_REQUIRED | InputOption::VALUE_IS_ARRAY,
                'Switch a hint off',
                [],
                $names,
            )
            ->addOption(
                'allow-raw',
                null,
                InputOption::VALUE_REQUIRED | InputOption::VALUE_IS_ARRAY,
                'References that may be printed raw in HTML, as a pattern such as "*_html"',
            )
            ->addOption('strict', null, InputOption::VALUE_NONE, 'Hints, too, make the exit status 1')
            ->addOption(
                'data',
                'd',
                InputOption::VALUE_REQUIRED,
                'Sample data (JSON) for the call of template() that confirms the findings',
            )
            ->setHelp(
                "Writes one line for each fault, <info>file:line:column: message</info>, and for each hint.\n"
                . "The exit status is 0 without faults, 1 with faults, 2 when the command itself is wrong.\n\nThe hints:\n"
                . implode("\n", $hints),
            );
    }

    protected function execute(InputInterface $input, OutputInterface $output): int
    {
        $format = Format::tryFrom($input->getOption('format'))
            ?? throw new UsageError('The format is one of text, json, github and checkstyle.');
        $report = new Report();
        $linter = new Linter(
            $input->getOption('data') === null ? [] : self::dataFrom($input->getOption('data')),
            self::hints($input),
            $input->getOption('allow-raw'),
            Engine::isLoaded() ? new Engine() : null,
            $report,
        );
        foreach (new FileFinder($input->getOption('name'))->find($input->getArgument('path')) as $file) {
            if (FileFinder::isBinary($file)) {
                $report->binary[] = $file;
            } else {
                ++$report->files;
                $linter->file($file);
            }
        }
        $linter->finish();
        $output->write($format->write($report), false, OutputInterface::OUTPUT_RAW | OutputInterface::VERBOSITY_QUIET);
        array_map(static fn (string $line) => self::complain($output, $line), self::summary($report, $input));

        return $report->faults() > 0 || ($input->getOption('strict') && $report->hints() > 0) ? self::FAILURE : self::SUCCESS;
    }

    /** @return list<HintKind> */
    private static function hints(InputInterface $input): array
    {
        $off = array_map(
            static fn (string $name): HintKind => HintKind::tryFrom($name)
                ?? throw new UsageError("There is no hint \"$name\"; \"template help lint\" lists them."),
            $input->getOption('no-hint'),
        );

        return $input->getOption('no-hints')
            ? []
            : array_values(array_filter(HintKind::cases(), static fn (HintKind $kind): bool => !in_array($kind, $off, true)));
    }

    /** @return list<string> */
    private static function summary(Report $report, InputInterface $input): array
    {
        $lines = [sprintf(
            '%s, %s, %s.',
            self::count($report->files, 'file'),
            self::count($report->faults(), 'fault'),
            self::count($report->hints(), 'hint'),
        )];
        if ($report->binary !== []) {
            $lines[] = 'Left out, as they are not text: ' . implode(', ', $report->binary) . '.';
        }
        if (!Engine::isLoaded()) {
            $lines[] = 'The extension is not loaded: these are the findings of lint alone, not confirmed by template().';
        } elseif ($report->notAsked !== []) {
            $lines[] = 'Not confirmed by template(), because of what they include: ' . implode(', ', $report->notAsked) . '.';
        }
        if ($input->getOption('data') === null) {
            $lines[] = 'Not seen without data: which files are included under names from the data, names that are missing'
                . ($report->sectionReferences === 0 ? '' : sprintf(
                    ', and what %s into repeated sections would find',
                    self::count($report->sectionReferences, 'reference'),
                ))
                . '. A sample (--data FILE) lets template() try.';
        }

        return $lines;
    }

    private static function count(int $count, string $what): string
    {
        return $count === 1 ? "1 $what" : "$count {$what}s";
    }
}

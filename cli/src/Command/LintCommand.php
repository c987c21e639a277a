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
use TemplateCli\Lint\Sample;
use TemplateCli\Project;
use TemplateCli\StandardInput;
use TemplateCli\UsageError;

#[AsCommand('lint', 'Checks templates and tells the place of every fault')]
final class LintCommand extends TemplateCommand
{
    /** @var array<string, Sample> those that were read, by file */
    private array $samples = [];

    protected function configure(): void
    {
        parent::configure();
        $this->getDefinition()->addOption(Format::option());
        $names = array_column(HintKind::cases(), 'value');
        $hints = array_map(static fn (HintKind $kind): string => "  $kind->value: {$kind->summary()}", HintKind::cases());
        $many = InputOption::VALUE_REQUIRED | InputOption::VALUE_IS_ARRAY;
        $this
            ->addArgument(
                'path',
                InputArgument::IS_ARRAY,
                'Files, folders with all templates in them, - for standard input; else what the project file names',
            )
            ->addOption('name', null, $many, 'In folders, files whose name matches this pattern, instead of "*.tpl"')
            ->addOption('stdin-name', null, InputOption::VALUE_REQUIRED, 'What the text on standard input is called')
            ->addOption('no-hints', null, InputOption::VALUE_NONE, 'Report faults only')
            ->addOption('no-hint', null, $many, 'Switch a hint off', [], $names)
            ->addOption('allow-raw', null, $many, 'References that may be printed raw in HTML, as a pattern such as "*_html"')
            ->addOption('strict', null, InputOption::VALUE_NONE, 'Hints, too, make the exit status 1')
            ->addOption('data', 'd', InputOption::VALUE_REQUIRED, 'Sample data (JSON), held against the templates as "check" does it')
            ->setHelp(
                "Writes one line for each fault, <info>file:line:column: message</info>, and for each hint.\n"
                . "The exit status is 0 without faults, 1 with faults, 2 when the command itself is wrong.\n\nThe hints:\n"
                . implode("\n", $hints),
            );
    }

    protected function execute(InputInterface $input, OutputInterface $output): int
    {
        $format = Format::of($input->getOption('format'));
        $report = new Report();
        $paths = $input->getArgument('path') ?: $this->project->paths
            ?: throw new UsageError('Name files or folders, or - for standard input; or a project file (template.json) with "paths".');
        $groups = [];
        foreach (new FileFinder($input->getOption('name') ?: $this->project->names)->find($paths) as $file) {
            $isInput = $file === FileFinder::STANDARD_INPUT;
            $folder = dirname($isInput ? $input->getOption('stdin-name') ?? '.' : $file);
            $groups[$folder][] = $isInput ? null : $file;
        }
        foreach (self::byProject($groups, fn (string $folder): Project => $this->projectOf($input, $folder)) as [$project, $files]) {
            $this->enter($project);
            $this->lint($input, $files, $report);
        }
        $report->sort();
        self::result($output, $format->write($report));
        array_map(static fn (string $line) => self::complain($output, $line), self::summary($report));

        return $report->faults() > 0 || ($input->getOption('strict') && $report->hints() > 0) ? self::FAILURE : self::SUCCESS;
    }

    /**
     * @param array<string, list<?string>> $groups files by folder
     * @param \Closure(string): Project $projectOf
     *
     * @return array<array{Project, list<?string>}>
     */
    private static function byProject(array $groups, \Closure $projectOf): array
    {
        $projects = [];
        foreach ($groups as $folder => $files) {
            $project = $projectOf((string) $folder);
            $projects[$project->file] ??= [$project, []];
            array_push($projects[$project->file][1], ...$files);
        }

        return $projects;
    }

    /** @param list<?string> $files null for standard input */
    private function lint(InputInterface $input, array $files, Report $report): void
    {
        $raw = [...$this->project->allowRaw, ...$input->getOption('allow-raw')];
        $linter = new Linter($this->hints($input), $raw, Engine::isLoaded() ? new Engine() : null, $report);
        foreach ($files as $file) {
            ++$report->files;
            if ($file === null) {
                $name = $input->getOption('stdin-name') ?? 'standard input';
                $linter->text($name, StandardInput::read(), $this->samples($input, $name));
            } else {
                $linter->file($file, $this->samples($input, $file));
            }
        }
        $linter->finish();
    }

    /** @return list<Sample> */
    private function samples(InputInterface $input, string $template): array
    {
        $given = $input->getOption('data');

        return array_map(
            fn (string $file): Sample => $this->samples[$file] ??= new Sample($file, self::dataFrom($file)),
            $given === null ? $this->project->dataFor($template) : [$given],
        );
    }

    /** @return list<HintKind> */
    private function hints(InputInterface $input): array
    {
        $off = array_map(
            static fn (string $name): HintKind => HintKind::tryFrom($name)
                ?? throw new UsageError("There is no hint \"$name\"; \"template help lint\" lists them."),
            [...$this->project->off, ...$input->getOption('no-hint')],
        );
        $isWanted = static fn (HintKind $kind): bool => !in_array($kind, $off, true)
            && ($kind->isFault() || !$input->getOption('no-hints'));

        return array_values(array_filter(HintKind::cases(), $isWanted));
    }

    /** @return list<string> */
    private static function summary(Report $report): array
    {
        $lines = [sprintf(
            '%s, %s, %s.',
            self::count($report->files, 'file'),
            self::count($report->faults(), 'fault'),
            self::count($report->hints(), 'hint'),
        )];
        if (!Engine::isLoaded()) {
            $lines[] = 'The extension is not loaded: these are the findings of lint alone, not confirmed by template().';
        } elseif ($report->notAsked !== []) {
            $lines[] = 'Not confirmed by template(), because of what they include: ' . implode(', ', $report->notAsked) . '.';
        }
        if (!$report->isSampled) {
            $lines[] = 'Not seen without data: which files are included under names from the data, names that are missing'
                . ($report->sectionReferences === 0 ? '' : sprintf(
                    ', and what %s into repeated sections would find',
                    self::count($report->sectionReferences, 'reference'),
                ))
                . '. With a sample (--data FILE) they are checked.';
        }

        return $lines;
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Command;

use Symfony\Component\Console\Attribute\AsCommand;
use Symfony\Component\Console\Input\InputArgument;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Input\InputOption;
use Symfony\Component\Console\Output\OutputInterface;
use TemplateCli\Batch\FileNames;
use TemplateCli\Batch\FileSink;
use TemplateCli\Batch\LineSink;
use TemplateCli\Batch\Progress;
use TemplateCli\Batch\RowReader;
use TemplateCli\Batch\RowRenderer;
use TemplateCli\Batch\Run;
use TemplateCli\Batch\Sink;
use TemplateCli\Batch\Verification;
use TemplateCli\Extension;
use TemplateCli\UsageError;

#[AsCommand('batch', 'Renders one template with every line of a file or a pipe')]
final class BatchCommand extends TemplateCommand
{
    protected function configure(): void
    {
        parent::configure();
        $this->addDataOptions();
        PartOptions::addTo($this);
        $this
            ->addArgument('template', InputArgument::REQUIRED, 'The template file')
            ->addArgument(
                'rows',
                InputArgument::OPTIONAL,
                'A file with a JSON object or list on each line; - or nothing for standard input',
                '-',
            )
            ->addOption(
                'output',
                'o',
                InputOption::VALUE_REQUIRED,
                'A file for all results, or a pattern such as "mails/{id}.txt" for a file each; {#} is the line\'s number',
            )
            ->addOption('data', 'd', InputOption::VALUE_REQUIRED, 'A JSON file with data that all rows share')
            ->addOption(
                'resume',
                'r',
                InputOption::VALUE_NONE,
                'Go on where an interrupted run with the same --output stopped',
            )
            ->addOption('force', null, InputOption::VALUE_NONE, 'Overwrite what is there, and begin with the first row')
            ->addOption('jobs', 'j', InputOption::VALUE_REQUIRED, 'Render in so many processes', '1')
            ->addOption('allow-faults', null, InputOption::VALUE_NONE, 'Exit with status 0 also when rows had faults')
            ->addOption('no-progress', null, InputOption::VALUE_NONE, 'No progress bar on the terminal')
            ->setHelp(
                "Without a pattern, every input line gives one output line, in the same order: a JSON string with the\n"
                . "result, or {\"error\": …}. Faults are told on standard error, too, and do not stop the run.\n"
                . 'The exit status is 0, 1 when rows had faults, 2 when the command itself is wrong, 128 and the signal\'s'
                . " number after an interruption.",
            );
    }

    protected function execute(InputInterface $input, OutputInterface $output): int
    {
        $parts = new PartOptions($input);
        $parts->verify || Extension::need();
        $renderer = new RowRenderer($input->getArgument('template'), self::data($input, $input->getOption('data')));
        if ($parts->verify) {
            return self::tell($parts->verification($renderer), $output);
        }
        $start = hrtime(true);
        $jobs = self::jobs($input->getOption('jobs'));
        $rows = new RowReader($input->getArgument('rows'), $parts->part);
        $complain = static fn (string $message) => self::complain($output, $parts->place() . $message, always: true);
        $run = new Run($rows, $renderer, self::sink($input), $complain);
        $parts->manifest?->remove();
        $run->go(self::progress($input, self::errors($output), $run, $rows), $jobs);
        $parts->record($run, $renderer);
        self::complain($output, self::summary($run, (hrtime(true) - $start) / 1e9, $input));

        return match (true) {
            $run->signal !== null => 128 + $run->signal,
            $run->done->faults > 0 && !$input->getOption('allow-faults') => self::FAILURE,
            default => self::SUCCESS,
        };
    }

    private static function tell(Verification $verification, OutputInterface $output): int
    {
        foreach ($verification->faults as $fault) {
            self::complain($output, $fault, always: true);
        }
        if ($verification->faults !== []) {
            return self::FAILURE;
        }
        self::complain($output, sprintf(
            'All as the manifest says: %s rows, %s of them with faults.',
            number_format($verification->done->rows),
            number_format($verification->done->faults),
        ));

        return self::SUCCESS;
    }

    private static function progress(InputInterface $input, OutputInterface $errors, Run $run, RowReader $rows): ?Progress
    {
        if (!stream_isatty(STDERR) || getenv('TERM') === 'dumb' || $input->getOption('no-progress') || $errors->isQuiet()) {
            return null;
        }
        // The bar moves the cursor and has no colours: NO_COLOR is no reason to leave it out.
        $errors->setDecorated(true);

        return new Progress($errors, $rows->size, $run->before, $rows->bytes);
    }

    private static function jobs(string $option): int
    {
        $jobs = filter_var($option, FILTER_VALIDATE_INT, ['options' => ['min_range' => 1, 'max_range' => 256]]);
        if ($jobs === false) {
            throw new UsageError('--jobs takes a number of processes, from 1 to 256.');
        }

        return $jobs === 1 || function_exists('pcntl_fork') ? $jobs : throw new UsageError('--jobs needs the PHP extension "pcntl".');
    }

    private static function sink(InputInterface $input): Sink
    {
        [$output, $resume, $force] = array_map($input->getOption(...), ['output', 'resume', 'force']);
        if ($resume && $force) {
            throw new UsageError('--resume goes on with what is there, --force does away with it: give one of them.');
        }
        if ($output === '') {
            throw new UsageError('--output needs the name of a file, or a pattern.');
        }
        if ($output === null && $resume) {
            throw new UsageError('--resume needs --output: what went to standard output cannot be looked at again.');
        }

        return match (true) {
            $output === null => LineSink::onStandardOutput(),
            FileNames::isPattern($output) => new FileSink(new FileNames($output), $resume, $force),
            default => LineSink::inFile($output, $resume, $force),
        };
    }

    private static function summary(Run $run, float $seconds, InputInterface $input): string
    {
        $rows = $run->done->rows - $run->before->rows;
        $summary = sprintf(
            '%s rows, %s of them with faults, in %.1f s (%s rows/s)',
            number_format($rows),
            number_format($run->done->faults - $run->before->faults),
            $seconds,
            number_format($rows / max($seconds, 1e-6)),
        );
        if ($run->before->rows > 0) {
            $summary .= sprintf(
                '; with the earlier run: %s rows, %s faults',
                number_format($run->done->rows),
                number_format($run->done->faults),
            );
        }
        if ($run->signal !== null) {
            $summary = "Interrupted after line {$run->done->rows}. $summary"
                . ($input->getOption('output') === null ? '' : '; the same command with --resume goes on');
        }

        return "$summary.";
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli;

use Symfony\Component\Console\Application as Console;
use Symfony\Component\Console\Exception\ExceptionInterface;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Output\ConsoleOutputInterface;
use Symfony\Component\Console\Output\ConsoleOutput;
use Symfony\Component\Console\Output\OutputInterface;

/** The command line "template". Its exit status is 0, 1 when the work failed, 2 when it was asked for wrongly. */
final class Application extends Console
{
    public function __construct()
    {
        parent::__construct('template', '2.0.0');
        $this->setAutoExit(false);
        $this->setCatchExceptions(false);
        // add() is gone in the newest Console, addCommands() is in all of them.
        $this->addCommands([
            new Command\RenderCommand(),
            new Command\LintCommand(),
            new Command\CheckCommand(),
            new Command\DataCommand(),
            new Command\EscapeCommand(),
            new Command\BatchCommand(),
            new Command\EditorCommand(),
        ]);
    }

    public function run(?InputInterface $input = null, ?OutputInterface $output = null): int
    {
        $output ??= new ConsoleOutput();
        try {
            return parent::run($input, $output);
        } catch (ExceptionInterface|UsageError $error) {
            return $this->complain($error, $output, 2);
        } catch (\Throwable $error) {
            return $this->complain($error, $output, 1);
        }
    }

    private function complain(\Throwable $error, OutputInterface $output, int $status): int
    {
        $errors = $output instanceof ConsoleOutputInterface ? $output->getErrorOutput() : $output;
        $isExpected = $error instanceof ExceptionInterface || $error instanceof UsageError || $error instanceof Failure;
        if ($output->isVerbose() || !$isExpected) {
            $this->renderThrowable($error, $errors);
        } else {
            // Not even --quiet makes a status of 1 or 2 a riddle.
            $options = OutputInterface::OUTPUT_RAW | OutputInterface::VERBOSITY_QUIET;
            $errors->writeln('template: ' . trim($error->getMessage()), $options);
        }

        return $status;
    }
}

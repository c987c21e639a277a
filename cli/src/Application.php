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
        $this->add(new Command\RenderCommand());
        $this->add(new Command\LintCommand());
        $this->add(new Command\BatchCommand());
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
            $errors->writeln('template: ' . trim($error->getMessage()), OutputInterface::OUTPUT_RAW);
        }

        return $status;
    }
}

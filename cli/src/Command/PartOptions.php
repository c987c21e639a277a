<?php

declare(strict_types=1);

namespace TemplateCli\Command;

use Symfony\Component\Console\Command\Command;
use Symfony\Component\Console\Input\InputInterface;
use Symfony\Component\Console\Input\InputOption;
use TemplateCli\Batch\ByteDigest;
use TemplateCli\Batch\FileNames;
use TemplateCli\Batch\Manifest;
use TemplateCli\Batch\Part;
use TemplateCli\Batch\PartRecord;
use TemplateCli\Batch\RowRenderer;
use TemplateCli\Batch\Run;
use TemplateCli\Batch\Verification;
use TemplateCli\UsageError;

/** What "batch" is told about parts of the rows and about the manifest. */
final readonly class PartOptions
{
    public ?Part $part;
    public ?Manifest $manifest;
    public bool $verify;
    private string $rows;
    private ?string $output;

    public static function addTo(Command $command): void
    {
        $command
            ->addOption('part', null, InputOption::VALUE_REQUIRED, 'A share of the rows: 3/8 is the third of eight parts of the file')
            ->addOption('manifest', null, InputOption::VALUE_REQUIRED, 'A file to note down at the end what was read and written')
            ->addOption('verify', null, InputOption::VALUE_NONE, 'Render nothing: hold --output against --manifest');
    }

    public function __construct(InputInterface $input)
    {
        [$part, $manifest, $this->verify, $this->output] =
            array_map($input->getOption(...), ['part', 'manifest', 'verify', 'output']);
        $this->rows = $input->getArgument('rows');
        $this->part = $part === null ? null : Part::parse($part);
        $this->manifest = $manifest === null ? null : new Manifest($manifest);
        $this->check();
    }

    /** What goes before "line 3" in messages. */
    public function place(): string
    {
        return $this->part === null ? '' : "part $this->part, ";
    }

    /** Read back from the files, so that it tells of what is there. */
    public function record(Run $run, RowRenderer $renderer): void
    {
        if ($this->manifest === null || $run->signal !== null) {
            return;
        }
        $part = $this->part ?? new Part(1, 1);
        $rows = new ByteDigest($this->rows);
        $results = new ByteDigest($this->output);
        [$from, $to] = $part->bounds($rows->stream, $rows->size);
        $this->manifest->write(new PartRecord(
            (string) $part,
            $from,
            $to,
            $run->done->rows,
            $run->done->faults,
            $renderer->fingerprint(),
            $rows->of($from, $to),
            $results->size,
            $results->of(0, $results->size),
        ));
    }

    public function verification(RowRenderer $renderer): Verification
    {
        $verification = new Verification($this->manifest, $this->part);
        $verification->hold(new ByteDigest($this->rows), $renderer->fingerprint(), new ByteDigest($this->output));

        return $verification;
    }

    private function check(): void
    {
        if ($this->verify && ($this->manifest === null || $this->output === null)) {
            throw new UsageError('--verify needs the --manifest and the --output of the run.');
        }
        $isOneFile = $this->output !== null && !FileNames::isPattern($this->output);
        if ($this->manifest !== null && (!$isOneFile || $this->rows === '-')) {
            throw new UsageError('--manifest needs a file with the rows, and one --output file for all results.');
        }
        if ($this->part !== null && preg_match('/\{[^}]*#/', (string) $this->output) === 1) {
            throw new UsageError(
                '{#} counts from the beginning of a part: with --part, name the files by the rows\' own data.',
            );
        }
    }
}

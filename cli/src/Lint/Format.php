<?php

declare(strict_types=1);

namespace TemplateCli\Lint;

use Symfony\Component\Console\Input\InputOption;
use TemplateCli\Json;
use TemplateCli\UsageError;

/** How a report is written. */
enum Format: string
{
    case Text = 'text';
    case Json = 'json';
    case Github = 'github';
    case Checkstyle = 'checkstyle';

    public static function option(): InputOption
    {
        $names = array_column(self::cases(), 'value');

        return new InputOption('format', 'f', InputOption::VALUE_REQUIRED, 'text, json, github or checkstyle', 'text', $names);
    }

    public static function of(string $name): self
    {
        return self::tryFrom($name) ?? throw new UsageError('The format is one of text, json, github and checkstyle.');
    }

    public function write(Report $report): string
    {
        return match ($this) {
            self::Text => self::lines($report, static fn (Finding $finding): string => $finding->line()),
            self::Json => self::json($report),
            self::Github => self::lines($report, self::githubLine(...)),
            self::Checkstyle => self::checkstyle($report),
        };
    }

    /** @param \Closure(Finding): string $line */
    private static function lines(Report $report, \Closure $line): string
    {
        return implode('', array_map(static fn (Finding $finding): string => $line($finding) . "\n", $report->findings));
    }

    private static function githubLine(Finding $finding): string
    {
        $place = $finding->place;
        $level = $finding->isFault() ? 'error' : 'notice';
        $property = static fn (string $text): string => strtr(
            $text,
            ['%' => '%25', "\r" => '%0D', "\n" => '%0A', ':' => '%3A', ',' => '%2C'],
        );
        // An end column only means something to GitHub on one line.
        $end = $place->endLine === $place->line ? ",endColumn=$place->endColumn" : '';

        return "::$level file={$property($place->file)},line=$place->line,endLine=$place->endLine,col=$place->column$end"
            . ",title=template $finding->rule::" . str_replace('%', '%25', $finding->text());
    }

    private static function json(Report $report): string
    {
        return Json::line([
            'files' => $report->files,
            'faults' => $report->faults(),
            'hints' => $report->hints(),
            'findings' => array_map(self::finding(...), $report->findings),
        ], JSON_PRETTY_PRINT | JSON_INVALID_UTF8_SUBSTITUTE) . "\n";
    }

    /** @return array<string, int|string> */
    public static function finding(Finding $finding): array
    {
        return [
            'file' => $finding->place->file,
            'line' => $finding->place->line,
            'column' => $finding->place->column,
            'endLine' => $finding->place->endLine,
            'endColumn' => $finding->place->endColumn,
            'severity' => $finding->isFault() ? 'error' : 'hint',
            'rule' => $finding->rule,
            'message' => $finding->message,
            'note' => $finding->note,
            'data' => $finding->source,
            'path' => $finding->path,
        ];
    }

    private static function checkstyle(Report $report): string
    {
        $files = [];
        foreach ($report->findings as $finding) {
            $files[$finding->place->file][] = self::checkstyleError($finding);
        }
        $xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<checkstyle version=\"8.0\">\n";
        foreach ($files as $file => $errors) {
            $xml .= ' <file' . self::attributes(['name' => (string) $file]) . ">\n" . implode('', $errors) . " </file>\n";
        }

        return "$xml</checkstyle>\n";
    }

    private static function checkstyleError(Finding $finding): string
    {
        return '  <error' . self::attributes([
            'line' => (string) $finding->place->line,
            'column' => (string) $finding->place->column,
            'severity' => $finding->isFault() ? 'error' : 'info',
            'message' => $finding->text(),
            'source' => "template.$finding->rule",
        ]) . "/>\n";
    }

    /** @param array<string, string> $attributes */
    private static function attributes(array $attributes): string
    {
        $text = '';
        foreach ($attributes as $name => $value) {
            $escaped = htmlspecialchars($value, ENT_XML1 | ENT_COMPAT | ENT_SUBSTITUTE | ENT_DISALLOWED, 'UTF-8');
            $text .= " $name=\"$escaped\"";
        }

        return $text;
    }
}

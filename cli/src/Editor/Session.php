<?php

declare(strict_types=1);

namespace TemplateCli\Editor;

use TemplateCli\Json;
use TemplateCli\Language\HintKind;
use TemplateCli\Lint\Finding;
use TemplateCli\Lint\Format;
use TemplateCli\Lint\Linter;
use TemplateCli\Lint\Report;
use TemplateCli\Project;

/**
 * Answers questions about texts that are being written: a line of JSON for each line of JSON.
 *
 * It asks nothing of the extension: what is half written may include itself without end.
 */
final readonly class Session
{
    /** Where the manual is: in a checkout or an archive, and where the Debian package puts it. */
    private const array MANUAL = [__DIR__ . '/../../../docs', __DIR__ . '/../../../../doc/php-template-cli'];

    /**
     * @param list<string> $rawNames patterns of references that may be printed raw
     * @param \Closure(string): Project $projectOf the project of a file, whose include path then holds
     */
    public function __construct(private array $rawNames, private \Closure $projectOf)
    {
    }

    /** @param resource $input */
    public function run($input, \Closure $write): void
    {
        while (($line = fgets($input)) !== false) {
            $write($this->answer($line) . "\n");
        }
    }

    private function answer(string $line): string
    {
        try {
            $question = Json::data($line);
            if (!is_string($question['name'] ?? null) || !is_string($question['text'] ?? null)) {
                throw new \JsonException('a question has the texts "name" and "text"');
            }
            $answer = $this->about($question['name'], $question['text']);
        } catch (\Throwable $error) {
            $answer = ['error' => $error->getMessage()];
        }

        return Json::line($answer, JSON_INVALID_UTF8_SUBSTITUTE);
    }

    /** @return array<string, mixed> */
    private function about(string $name, string $text): array
    {
        clearstatcache(true);
        $project = ($this->projectOf)($name);
        $tags = Outline::of($text);
        $report = new Report();
        $linter = new Linter(self::hints($tags, $project->off), [...$project->allowRaw, ...$this->rawNames], null, $report);
        $linter->text($name, $text, []);
        $linter->finish();
        $report->sort();
        $here = array_filter($report->findings, static fn (Finding $finding): bool => $finding->place->file === $name);

        return [
            'findings' => array_map(Format::finding(...), array_values($here)),
            'tags' => $tags,
            'data' => $project->dataFor($name),
            'manual' => current(array_filter(array_map(realpath(...), self::MANUAL))) ?: '',
        ];
    }

    /**
     * A file without repeated sections is made to be included into one.
     *
     * @param list<array<string, mixed>> $tags
     * @param list<string> $off
     *
     * @return list<HintKind>
     */
    private static function hints(array $tags, array $off): array
    {
        $repeats = array_any($tags, static fn (array $tag): bool => str_ends_with($tag['keyword'], 'dynamic'));
        $isWanted = static fn (HintKind $kind): bool => !in_array($kind->value, $off, true)
            && ($repeats || $kind !== HintKind::UnknownSection);

        return array_values(array_filter(HintKind::cases(), $isWanted));
    }
}

<?php

declare(strict_types=1);

/** The sessions in the documents: each command is run and must print what is shown. */
final class DocsTest extends CliTestCase
{
    private const string MANUAL = __DIR__ . '/../../docs/cli.md';
    private const string MAN_PAGE = __DIR__ . '/../../docs/template.1.md';

    public static function documents(): array
    {
        return ['the manual' => [self::MANUAL, 10], 'the guide' => [__DIR__ . '/../../docs/guide.md', 5]];
    }

    #[PHPUnit\Framework\Attributes\DataProvider('documents')]
    public function testSessions(string $document, int $fewest): void
    {
        preg_match_all('/^```console\n(.*?)^```$/ms', file_get_contents($document), $sessions);
        $commands = 0;
        foreach ($sessions[1] as $session) {
            foreach (preg_split('/^\$ /m', $session, flags: PREG_SPLIT_NO_EMPTY) as $step) {
                preg_match('/^([^\n]*\n(?:>[^\n]*\n)*)(.*)$/s', $step, $match);
                $command = preg_replace('/^> ?/m', '', $match[1]);
                $printed = $this->shell("exec 2>&1\n$command")[1];
                $shown = str_replace('…', '[^\n]+', preg_quote($match[2], '~'));
                self::assertMatchesRegularExpression("~^$shown$~D", $printed, $command);
                ++$commands;
            }
        }
        self::assertGreaterThan($fewest, $commands);
    }

    public function testEveryOptionIsInTheManPage(): void
    {
        $page = file_get_contents(self::MAN_PAGE);
        foreach (['render', 'lint', 'check', 'data', 'escape', 'batch'] as $command) {
            $description = json_decode($this->template('help', $command, '--format', 'json')[1], true, flags: JSON_THROW_ON_ERROR);
            foreach ($description['definition']['options'] as $name => $option) {
                if (!in_array($name, ['ansi', 'no-ansi', 'no-interaction', 'verbose', 'silent'], true)) {
                    self::assertStringContainsString("**{$option['name']}**", $page);
                }
            }
        }
        $hints = array_column(TemplateCli\Language\HintKind::cases(), 'value');
        foreach ($hints as $hint) {
            self::assertStringContainsString("**$hint**", $page);
            self::assertStringContainsString("| `$hint` |", file_get_contents(self::MANUAL));
        }
    }
}

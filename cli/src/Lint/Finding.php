<?php

declare(strict_types=1);

namespace TemplateCli\Lint;

use TemplateCli\Check\Problem;
use TemplateCli\Language\Fault;
use TemplateCli\Language\Hint;
use TemplateCli\Language\Place;

/** One line of a report. */
final readonly class Finding
{
    public const string FAULT = 'fault';
    private const int LONGEST = 600;

    private function __construct(
        public Place $place,
        /** "fault", or the name of the hint or of the check. */
        public string $rule,
        public string $message,
        public string $note,
        private bool $isFault,
        /** The file, and perhaps the line, that the data are from. */
        public string $source = '',
        /** Where in the data. */
        public string $path = '',
    ) {
    }

    public static function ofFault(Fault $fault): self
    {
        return new self($fault->place, self::FAULT, $fault->message, $fault->note, true);
    }

    public static function ofHint(Hint $hint): self
    {
        return new self($hint->place, $hint->kind->value, $hint->message, '', $hint->kind->isFault());
    }

    /** @param string $source the file, and perhaps the line, that the data are from */
    public static function ofProblem(Problem $problem, string $source): self
    {
        $more = $problem->more > 0 ? "and $problem->more more like this" : '';

        return new self(
            $problem->place,
            $problem->rule->value,
            $problem->message,
            implode('; ', array_filter([$problem->note, $more])),
            !$problem->rule->isNote(),
            $problem->rule->isOfTemplate() ? '' : $source,
            $problem->path,
        );
    }

    public function isFault(): bool
    {
        return $this->isFault;
    }

    public function line(): string
    {
        return "$this->place: " . ($this->isFault ? '' : 'hint: ') . $this->text()
            . ($this->rule === self::FAULT ? '' : " [$this->rule]");
    }

    /** The message and the note in one line, whatever bytes the template had in its names. */
    public function text(): string
    {
        $text = implode(': ', array_filter([$this->source, $this->path, $this->message], static fn (string $part): bool => $part !== ''));
        $text .= $this->note === '' ? '' : " ($this->note)";
        // What a tag has swallowed is a run of braces in the engine's message; nobody wants to read all of it.
        $text = preg_replace('/\{{9,}/', '{{{…', $text);
        $text = strlen($text) > self::LONGEST ? mb_strcut($text, 0, self::LONGEST, 'UTF-8') . '…' : $text;

        return addcslashes(mb_scrub($text, 'UTF-8'), "\0..\37\177");
    }
}

<?php

declare(strict_types=1);

namespace TemplateCli\Lint;

use TemplateCli\Language\Fault;
use TemplateCli\Language\Hint;
use TemplateCli\Language\Place;

/** One line of a report. */
final readonly class Finding
{
    public const string FAULT = 'fault';

    private function __construct(
        public Place $place,
        /** "fault", or the name of the hint. */
        public string $rule,
        public string $message,
        public string $note,
    ) {
    }

    public static function ofFault(Fault $fault): self
    {
        return new self($fault->place, self::FAULT, $fault->message, $fault->note);
    }

    public static function ofHint(Hint $hint): self
    {
        return new self($hint->place, $hint->kind->value, $hint->message, '');
    }

    public function isFault(): bool
    {
        return $this->rule === self::FAULT;
    }

    /** The message and the note in one line, whatever bytes the template had in its names. */
    public function text(): string
    {
        $text = $this->note === '' ? $this->message : "$this->message ($this->note)";

        return addcslashes(mb_scrub($text, 'UTF-8'), "\0..\37\177");
    }
}

<?php

declare(strict_types=1);

namespace Bench;

/**
 * What the data of the workloads is made of, at random: a processor learns what repeats, and then shows times that no
 * user sees. The same seed gives the same data in every process.
 */
final class Chance
{
    /** No apostrophe anywhere: the escapers of the engines agree about every other character. */
    private const SPECIAL = ['<', '>', '&', '"'];

    private const LETTERS = [
        'plain' => 'aabcdeeefghiijklmnoopqrrsstttuvwxyz',
        'western' => 'aäbcçdeéèfghiïjklmnñoöøpqrsßtuüvwxyz',
        'cyrillic' => 'абвгдежзийклмнопрстуфхцчшщъыьэюя',
        'greek' => 'αβγδεζηθικλμνξοπρστυφχψω',
        'arabic' => 'ابتثجحخدذرزسشصضطظعغفقكلمنهوي',
        'hebrew' => 'אבגדהוזחטיכלמנסעפצקרשת',
        'hindi' => 'कखगघचछजझटठडढणतथदधनपफबभमयरलवशषसह',
        'japanese' => 'あいうえおかきくけこさしすせそたちつてと日本語字文章学生先',
        'emoji' => '😀😎🚀🌍🎉🐘🍎🎲📦🔧',
    ];

    private readonly \Random\Randomizer $random;

    /** @var array<string, list<string>> */
    private array $vocabulary = [];

    public function __construct(int $seed)
    {
        $this->random = new \Random\Randomizer(new \Random\Engine\Mt19937($seed));
    }

    public function number(int $least, int $most): int
    {
        return $this->random->getInt($least, $most);
    }

    /** True in so many of a hundred cases. */
    public function percent(int $percent): bool
    {
        return $this->random->getInt(1, 100) <= $percent;
    }

    public function of(array $list): mixed
    {
        return $list[$this->random->getInt(0, \count($list) - 1)];
    }

    /** Any of the scripts, to be given to word() and text(). */
    public function script(): string
    {
        return $this->of(\array_keys(self::LETTERS));
    }

    public function word(string $script = 'plain'): string
    {
        return $this->of($this->vocabulary[$script] ??= $this->words($script));
    }

    /** Two words, the first letters of which are capitals; now and then with an accent, or something to escape. */
    public function name(): string
    {
        $between = $this->percent(10) ? ' ' . $this->of(self::SPECIAL) . ' ' : ' ';
        return \ucfirst($this->word()) . $between . \ucfirst($this->word($this->percent(10) ? 'western' : 'plain'));
    }

    /** So many bytes or a few more; so many of a hundred characters, anywhere, are special ones. */
    public function text(int $bytes, string $script = 'plain', int $special = 0): string
    {
        for ($text = $this->word($script); \strlen($text) < $bytes;) {
            $text .= ' ' . $this->word($script);
        }
        $replace = fn (array $letter): string => $this->percent($special) ? $this->of(self::SPECIAL) : $letter[0];
        return $special === 0 ? $text : \preg_replace_callback('/./us', $replace, $text);
    }

    /** @return list<string> */
    private function words(string $script): array
    {
        $letters = \preg_split('//u', self::LETTERS[$script], -1, \PREG_SPLIT_NO_EMPTY);
        $words = [];
        while (\count($words) < 400) {
            $word = '';
            for ($length = $this->number(2, 10); $length > 0; $length--) {
                $word .= $this->of($letters);
            }
            $words[] = $word;
        }
        return $words;
    }
}

<?php
/**
 * What the libraries call of PHP's extensions mbstring and intl to measure and cut what they print, for a
 * PHP without them. Texts are UTF-8, or taken byte by byte.
 */

if (!function_exists('mb_strlen')) {
    function mb_str_split(string $text, int $length = 1, ?string $encoding = null): array
    {
        return preg_match('//u', $text) ? preg_split("/(.{{$length}})/us", $text, -1, PREG_SPLIT_DELIM_CAPTURE | PREG_SPLIT_NO_EMPTY) : str_split($text, $length);
    }
    function mb_strlen(string $text, ?string $encoding = null): int
    {
        return $encoding === '8bit' ? strlen($text) : count(mb_str_split($text));
    }
    function mb_strwidth(string $text, ?string $encoding = null): int
    {
        return mb_strlen($text);
    }
    function mb_substr(string $text, int $start, ?int $length = null, ?string $encoding = null): string
    {
        return implode('', array_slice(mb_str_split($text), $start, $length));
    }
    function mb_ord(string $character, ?string $encoding = null): int
    {
        $bytes = array_values(unpack('C*', $character));
        $code = $bytes[0] < 0x80 ? $bytes[0] : $bytes[0] & 0x7f >> count($bytes);
        foreach (array_slice($bytes, 1) as $byte) {
            $code = $code << 6 | $byte & 0x3f;
        }
        return $code;
    }
    function mb_check_encoding(string $text, ?string $encoding = null): bool
    {
        return (bool) preg_match('//u', $text);
    }
    function mb_detect_encoding(string $text, mixed $encodings = null, bool $strict = false): string|false
    {
        return preg_match('//u', $text) ? 'UTF-8' : false;
    }
    function mb_convert_encoding(string $text, string $to, mixed $from = null): string
    {
        return $text;
    }
    function mb_scrub(string $text, ?string $encoding = null): string
    {
        return htmlspecialchars_decode(htmlspecialchars($text, ENT_NOQUOTES | ENT_SUBSTITUTE, 'UTF-8'), ENT_NOQUOTES);
    }
    function mb_strtolower(string $text, ?string $encoding = null): string
    {
        return strtolower($text);
    }
}

if (!function_exists('normalizer_is_normalized')) {
    class Normalizer
    {
        const NFD = 4, NFKD = 8, NFC = 16, NFKC = 32;
    }
    function normalizer_is_normalized(string $text, int $form = Normalizer::NFC): bool
    {
        return true;
    }
    function normalizer_normalize(string $text, int $form = Normalizer::NFC): string
    {
        return $text;
    }
    function grapheme_strlen(string $text): int
    {
        return mb_strlen($text);
    }
    function grapheme_substr(string $text, int $start, ?int $length = null): string
    {
        return mb_substr($text, $start, $length);
    }
}


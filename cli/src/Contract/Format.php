<?php

declare(strict_types=1);

namespace TemplateCli\Contract;

use TemplateCli\Json;

/** How a contract is written. */
enum Format: string
{
    case Tree = 'tree';
    case Json = 'json';
    case JsonSchema = 'json-schema';
    case Phpdoc = 'phpdoc';
    case Sample = 'sample';

    public function write(Contract $contract): string
    {
        $json = static fn (mixed $value): string
            => Json::line($value, JSON_PRETTY_PRINT | JSON_INVALID_UTF8_SUBSTITUTE) . "\n";

        return match ($this) {
            self::Tree => new Listing($contract)->text(),
            self::Json => $json(new Listing($contract)->data()),
            self::JsonSchema => $json(Schema::of($contract)),
            self::Phpdoc => ArrayShape::docblock($contract),
            self::Sample => $json(Sample::of($contract->root) ?: new \stdClass()),
        };
    }
}

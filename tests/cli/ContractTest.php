<?php

declare(strict_types=1);

use PHPStan\PhpDocParser\Ast\PhpDoc\ParamTagValueNode;
use PHPStan\PhpDocParser\Lexer\Lexer;
use PHPStan\PhpDocParser\Parser\ConstExprParser;
use PHPStan\PhpDocParser\Parser\PhpDocParser;
use PHPStan\PhpDocParser\Parser\TokenIterator;
use PHPStan\PhpDocParser\Parser\TypeParser;
use PHPStan\PhpDocParser\ParserConfig;
use TemplateCli\Check;

/** The command "data". */
final class ContractTest extends CliTestCase
{
    private const string PAGE = <<<'TEMPLATE'
        {htmlspecialchars title} {nick user::name 'you'} {optional --}{nothing}{/optional}
        {dynamic title,rows}{title::*::name}{title::[*]}{optional title::*::qty 5}{include item.tpl}{/optional}
        {dynamic i,title::*::tags}{i::*} {title::*::id}{/dynamic}{/dynamic}{rows::total}
        {optional role 'admin'}{htmlspecialchars secret}{/optional}{optionals}{/optional}{include content}
        {dynamic r,list}{*::x::y}{/dynamic}{!optional list}{/optional}{m::5}{q::*}
        TEMPLATE;

    protected function setUp(): void
    {
        parent::setUp();
        $this->files(['page' => self::PAGE, 'item.tpl' => "\n{title::*::price}{dynamic title,title::*::parts}{title::*::of}{/dynamic}"]);
    }

    public function testTellsEveryPathAndItsUse(): void
    {
        [$status, $json] = $this->template('data', 'page', '--format', 'json');
        self::assertSame(0, $status);
        $data = json_decode($json, true, flags: JSON_THROW_ON_ERROR);
        $seen = [];
        foreach ($data['data'] as ['path' => $path, 'required' => $required, 'uses' => $uses]) {
            $seen[$path] = ($required ? '! ' : '') . implode('; ', array_map(
                static fn (array $use): string => "{$use['as']} {$use['detail']} {$use['file']}:{$use['line']}:{$use['column']}"
                    . ($use['default'] ? ' default' : '') . ($use['conditional'] ? ' conditional' : '')
                    . ($use['alternatives'] === [] ? '' : ' or ' . implode(' ', $use['alternatives'])),
                $uses,
            ));
        }
        self::assertSame([
            'title' => '! escaped text htmlspecialchars page:1:1',
            'nick' => 'text  page:1:26 default or user::name',
            'user' => '',
            'user::name' => 'text  page:1:26 default or nick',
            'rows' => '! section  page:2:1; key  page:2:37',
            'rows::total' => '! text  page:3:68',
            'rows::*::name' => '! text  page:2:21',
            'rows::*::qty' => 'comparison 5 page:2:49',
            'rows::*::price' => 'text  item.tpl:2:1 conditional',
            'rows::*::parts' => 'section  item.tpl:2:18 conditional',
            // Inside the included file "title" is open twice, and means the outermost.
            'rows::*::of' => 'text  item.tpl:2:49 conditional',
            'rows::*::tags' => '! section  page:3:1',
            'rows::*::tags::*' => '! text  page:3:27',
            'rows::*::id' => '! text  page:3:34',
            'role' => 'comparison admin page:4:1',
            'secret' => 'escaped text htmlspecialchars page:4:24 conditional',
            's' => 'condition  page:4:60',
            'content' => 'file name  page:4:82',
            'list' => 'section  page:5:1; condition  page:5:36',
            'list::*::x' => '! ',
            'list::*::x::y' => '! text  page:5:17',
            'm' => '! ',
            'm::5' => '! text  page:5:63',
        ], $seen);
        self::assertSame(
            [['what {include content} brings in', 4], ['the section that {q::*} refers to', 5]],
            array_map(static fn (array $unknown): array => [$unknown['what'], $unknown['line']], $data['unknown']),
        );
    }

    public function testTheSampleIsWhatTheTemplateAsksFor(): void
    {
        $this->files(['content' => '', 'page' => str_replace('{q::*}', '', self::PAGE)]);
        $sample = json_decode($this->template('data', 'page', '-f', 'sample')[1], true, flags: JSON_THROW_ON_ERROR);
        self::assertCount(2, $sample['rows']['num']);
        self::assertSame('5', $sample['rows']['num'][1]['qty']);
        self::assertSame([], new Check('page')->problems($sample));
        self::assertSame([true], self::valid($this->template('data', 'page', '-f', 'json-schema')[1], [$sample]));
    }

    public function testTheSchemaHoldsWhatCheckHolds(): void
    {
        $this->files(['t' => "{htmlspecialchars title}{nick 'x'}{dynamic r,rows}{r::*::name}{/dynamic}{optional u}{htmlspecialchars u::name}{/optional}"]);
        $schema = $this->template('data', 't', '-f', 'json-schema')[1];
        $good = ['title' => 'T', 'rows' => [['name' => 1]], 'u' => ['name' => 'x']];
        $cases = [
            $good, ['u' => null] + $good, ['u' => false] + $good, ['rows' => ['a' => ['name' => 'x']]] + $good, ['rows' => []] + $good,
            ['title' => 5] + $good, ['title' => null] + $good, ['nick' => null] + $good, ['rows' => 'x'] + $good, ['rows' => [[]]] + $good,
            ['rows' => [['name' => [1]]]] + $good, ['u' => ['name' => 5]] + $good, ['u' => 'x'] + $good, array_diff_key($good, ['title' => 0]),
        ];
        $isClean = static fn (array $data): bool => new Check('t')->problems($data) === [];
        self::assertSame(array_map($isClean, $cases), self::valid($schema, $cases));
    }

    public function testTheArrayShapeIsOneForPhpstan(): void
    {
        require_once '/usr/share/php/PHPStan/PhpDocParser/autoload.php';
        $this->files(['t' => "{a b::c 'x'}{htmlspecialchars first name}{addslashes it's}{k:k}{dynamic rows}{*}{/dynamic}{rows::5}{rows::\\n}"]);
        foreach (['page', 't'] as $template) {
            $config = new ParserConfig([]);
            $constants = new ConstExprParser($config);
            $parser = new PhpDocParser($config, new TypeParser($config, $constants), $constants);
            $comment = $this->template('data', $template, '-f', 'phpdoc')[1];
            $tags = $parser->parse(new TokenIterator(new Lexer($config)->tokenize(trim($comment))))->getTags();
            self::assertCount(1, $tags);
            self::assertInstanceOf(ParamTagValueNode::class, $tags[0]->value, $comment);
            self::assertStringStartsWith('array{', (string) $tags[0]->value->type);
        }
        self::assertStringContainsString("'first name': string", $comment);
    }

    public function testFaultsAndFanningIncludesDoNotKeepItFromItsEnd(): void
    {
        for ($level = 0; $level < 40; ++$level) {
            $files["f$level.tpl"] = '{include f' . ($level + 1) . '.tpl}{include f' . ($level + 1) . '.tpl}';
        }
        $this->files([...$files, 'f40.tpl' => '{deep}', 'bad' => '{a:::}{b}']);
        self::assertStringContainsString('deep', $this->template('data', 'f0.tpl')[1]);
        [$status, $output, $errors] = $this->template('data', 'bad');
        self::assertSame([1, "b  text (bad:1:7)\n", "bad:1:1: Bad formated parameter'a:::': too many :\n"], [$status, $output, $errors]);
    }

    /**
     * @param list<array<mixed>> $cases
     *
     * @return list<bool>
     */
    private static function valid(string $schema, array $cases): array
    {
        file_put_contents('schema.json', $schema);
        file_put_contents('cases.json', json_encode($cases));
        $program = 'import json, jsonschema; s = json.load(open("schema.json")); c = jsonschema.Draft202012Validator; c.check_schema(s); '
            . 'print(json.dumps([c(s).is_valid(d) for d in json.load(open("cases.json"))]))';
        exec('python3 -c ' . escapeshellarg($program) . ' 2>&1', $said);

        return json_decode(implode("\n", $said)) ?? self::fail(implode("\n", $said));
    }
}

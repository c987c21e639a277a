// What an editor gets from the language server.
import assert from 'node:assert/strict'
import { mkdtempSync, readFileSync, realpathSync, rmSync, writeFileSync } from 'node:fs'
import { tmpdir } from 'node:os'
import { join } from 'node:path'
import { after, before, test } from 'node:test'
import { Client } from './client.mjs'

const command = [process.env.PHP, `${process.cwd()}/bin/template`]
const folder = realpathSync(mkdtempSync(join(tmpdir(), 'pages-')))
let editor

before(async () => {
    writeFileSync(join(folder, 'part.tpl'), 'a part')
    writeFileSync(join(folder, 'sample.json'), JSON.stringify({
        title: 'Menu', user: { name: 'Ann', mail: 'ann@example.org' }, rows: [{ name: 'Cod', sizes: [{ price: 9 }] }, { name: 'Ray' }],
    }))
    writeFileSync(join(folder, 'template.json'), '{"data": {"*": ["sample.json"]}}')
    editor = await Client.start(folder, { command })
})
after(async () => {
    rmSync(folder, { recursive: true })
    assert.equal(await editor.end(), 0)
})

const labels = async (name, place) => (await editor.ask('completion', name, place)).map(({ label }) => label)

test('faults and hints come with their place, and a link that leads to their page', async () => {
    const found = await editor.write('faults.html.tpl', '<p title="\u{1f600}é">{htmlspecialchars a:::b}\n{dynamic row,rows}<b>{row::*::name}</b>')
    assert.deepEqual(found.map(({ range, severity, message }) => [range.start.line, range.start.character, range.end.character, severity, message]), [
        [0, 15, 39, 1, "Bad formated parameter'a:::b': too many :"],
        [1, 0, 18, 1, 'Missing closing tag (for {dynamic row,rows})'],
        [1, 21, 35, 3, 'printed raw inside HTML: row::*::name'],
    ])
    for (const { codeDescription: { href } } of found) {
        const [file, heading] = href.slice('file://'.length).split('#')
        const headings = readFileSync(file, 'utf8').match(/^#+ .*/gm).map(line => line.replace(/^#+ /, '').toLowerCase().replace(/[^\w -]/g, '').replace(/ /g, '-'))
        assert.ok(headings.includes(heading), href)
    }
    assert.deepEqual(await editor.write('faults.html.tpl', '<p>{htmlspecialchars a}'), [])
})

test('what is typed fast is answered for the last text', async () => {
    let last
    for (const letter of 'abcdefgh') last = editor.write('typed.tpl', `{include ${letter}.tpl}`)
    assert.match((await last)[0].message, /"h\.tpl"/)
})

test('an include leads to its file, an end to its beginning, a reference to its section', async () => {
    await editor.write('ways.tpl', '{include part.tpl}{include none.tpl}\n{dynamic row,rows}{optional x}{row::*::name}\n{/optional}{/dynamic}')
    assert.equal((await editor.ask('definition', 'ways.tpl', '{include part')).uri, editor.uri('part.tpl'))
    assert.equal(await editor.ask('definition', 'ways.tpl', '{include none'), null)
    const places = await Promise.all(['{/opt', '{/dyn', '{row::'].map(place => editor.ask('definition', 'ways.tpl', place)))
    assert.deepEqual(places.map(({ range }) => [range.start.line, range.start.character]), [[1, 18], [1, 0], [1, 0]])
})

test('hover tells what a tag does, and the value in the sample', async () => {
    const text = '{dynamic row,rows}{dynamic size,row::*::sizes}{size::*::price}{row::[*]}{/dynamic}{/dynamic}{user::name none}'
    await editor.write('values.tpl', text)
    const hover = async place => (await editor.ask('hover', 'values.tpl', place)).contents.value
    assert.match(await hover('{dynamic r'), /once for each element.*\n.*rows.*"Cod"/s)
    assert.match(await hover('{size'), /size::\*::price `: ` 9 `/)
    assert.match(await hover('{row::'), /row::\[\*\] `: ` "0" `/)
    assert.match(await hover('{user'), /"Ann".*none `: ` not in the sample/s)
    assert.match(await hover('{/dyn'), /Ends ` \{dynamic size,row::\*::sizes\} ` of line 1/)
    assert.equal(await editor.ask('hover', 'values.tpl', text), null)
})

test('names, sections in scope and keywords complete what is being written', async () => {
    const write = text => editor.write('names.tpl', `{dynamic row,rows}{dynamic old,rows}{/dynamic}\n${text}\n{/dynamic}<b>{more}</b>`)
    await write('{')
    const all = await labels('names.tpl', '\n{')
    for (const label of ['title', 'rows', 'row::*', 'row::[*]', 'row::*::name', 'optional', '/dynamic']) assert.ok(all.includes(label), label)
    assert.ok(!all.some(label => label.startsWith('old::')))
    await write('{htmlspecialchars user::')
    assert.deepEqual(await labels('names.tpl', 'user::'), ['user::name', 'user::mail'])
    await write('{htmlspecialchars row::*::')
    assert.deepEqual(await labels('names.tpl', 'row::*::'), ['row::*::name', 'row::*::sizes'])
    await write('{dynamic x,ro')
    assert.ok((await labels('names.tpl', 'x,ro')).includes('rows'))
    await write('{/')
    assert.deepEqual(await labels('names.tpl', '{/'), ['/dynamic'])
    for (const silent of ["{title 'a", '{ ', 'text', '{optional title =']) {
        await write(silent)
        assert.deepEqual(await labels('names.tpl', silent), [], silent)
    }
})

test('sections and includes are the outline, and sections fold', async () => {
    await editor.write('outline.tpl', '{dynamic row,rows}\n{optional a}\n{include part.tpl}\n{/optional}\n{/dynamic}\n{optional b}')
    const tree = symbols => symbols.map(({ name, children }) => [name, ...tree(children)])
    assert.deepEqual(tree(await editor.ask('documentSymbol', 'outline.tpl')),
        [['{dynamic row,rows}', ['{optional a}', ['{include part.tpl}']]], ['{optional b}']])
    assert.deepEqual((await editor.ask('foldingRange', 'outline.tpl')).map(({ startLine, endLine }) => [startLine, endLine]), [[0, 3], [1, 2]])
})

test('broken input gets an answer', async () => {
    const broken = ['', '{', '}', '{{', '{a{', '{/optional}{/dynamic}', '{dynamic ,}{dynamic}', '{\0}', '\ud800{x', '\r{a}\r\n{:::}', '{'.repeat(9999), '{optional a}'.repeat(3000)]
    for (const text of broken) {
        assert.ok(Array.isArray(await editor.write('broken.tpl', text)))
        for (const method of ['documentSymbol', 'foldingRange']) assert.ok(Array.isArray(await editor.ask(method, 'broken.tpl')))
        await editor.ask('hover', 'broken.tpl', text.slice(0, 1))
        assert.ok(Array.isArray(await editor.ask('completion', 'broken.tpl', text)))
    }
})

test('a page of 100 KB is answered, and how fast is told', async () => {
    const row = '<tr class="{class \'plain\'}"><td>{htmlspecialchars row::*::name}</td>{optional row::*::price}<td>{row::*::price}</td>{/optional}</tr>\n'
    const page = `{dynamic row,rows}\n${row.repeat(100_000 / row.length)}{/dynamic}\n`
    const times = []
    for (let round = 0; round < 5; round++) {
        const started = editor.processorTime()
        for (let key = 0; key < 4; key++) {
            const text = page + 'x'.repeat(4 * round + key) + '{'
            const faults = await editor.write('large.html.tpl', text)
            assert.equal(faults.at(-1).range.start.line, text.split('\n').length - 1)
            await editor.ask('completion', 'large.html.tpl', text)
        }
        times.push((editor.processorTime() - started) / 4)
    }
    // 100 ms are meant; how many it takes depends on the machine.
    console.log(`${times.join(' ')} ms of processor time for each key in a page of ${page.length} bytes`)
})

test('without the command there is a sentence, once', async () => {
    const other = await Client.start(folder, { command: ['no-such-command'] })
    void other.write('page.tpl', '{a')
    assert.deepEqual(await other.ask('documentSymbol', 'page.tpl'), [])
    assert.deepEqual(other.shown, ['The templates are not checked: there is no command "no-such-command".'])
    await other.end()
})

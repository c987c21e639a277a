import { pathToFileURL } from 'node:url'
import { FoldingRangeKind, SymbolKind } from 'vscode-languageserver/node'
import { opensSection, repeats } from './page.js'

const NOWHERE = { start: { line: 0, character: 0 }, end: { line: 0, character: 0 } }

// From an include to the file, from an end to its beginning, from a reference to its section.
export function definition(page, position) {
    const tag = page.tagAt(position)
    if (tag?.keyword === 'include') return tag.file ? { uri: pathToFileURL(tag.file).href, range: NOWHERE } : null
    const target = tag && (page.tags.findLast(({ end }) => end !== undefined && page.tags[end] === tag) ?? sectionOf(page, tag))
    return target ? { uri: page.uri, range: page.rangeOf(target.start, target.stop) } : null
}

function sectionOf(page, { start, references = [] }) {
    const named = references.find(({ section }) => section !== null)
    return named && page.sectionsAt(start).findLast(({ keyword, name }) => repeats(keyword) && (named.section === '' || name === named.section))
}

const endOf = (page, tag) => tag.end === undefined ? tag : page.tags[tag.end]

export function symbols(page) {
    const top = []
    const open = [] // the sections that are not over yet, each with the symbols in it
    for (const tag of page.tags) {
        while (open.length && open.at(-1).stop <= tag.start) open.pop()
        if (!opensSection(tag.keyword) && tag.keyword !== 'include') continue
        const symbol = {
            name: page.quote(tag),
            kind: tag.keyword === 'include' ? SymbolKind.File : repeats(tag.keyword) ? SymbolKind.Array : SymbolKind.Boolean,
            range: page.rangeOf(tag.start, endOf(page, tag).stop),
            selectionRange: page.rangeOf(tag.start, tag.stop),
            children: [],
        }
        ;(open.at(-1)?.children ?? top).push(symbol)
        open.push({ stop: endOf(page, tag).stop, children: symbol.children })
    }
    return top
}

export function folding(page) {
    return page.tags.filter(({ end }) => end !== undefined).flatMap(tag => {
        const startLine = page.rangeOf(tag.start, tag.stop).end.line
        const endLine = page.rangeOf(page.tags[tag.end].start, page.tags[tag.end].stop).start.line - 1
        return endLine > startLine ? [{ startLine, endLine, kind: FoldingRangeKind.Region }] : []
    })
}

import { CompletionItemKind } from 'vscode-languageserver/node'
import { closing, describe, KEYWORDS } from './language.js'
import { repeats } from './page.js'
import { show } from './sample.js'

const LONGEST_TAG = 2000

// What may stand at the cursor. The tag is being written: only what is left of the cursor is looked at.
export function complete(page, position, sample) {
    const offset = page.document.offsetAt(position)
    const written = page.text.slice(Math.max(0, offset - LONGEST_TAG), offset).match(/\{([^{}\s][^{}]*)?$/)
    if (!written) return []
    const tag = written[1] ?? ''
    const around = page.sectionsAt(offset - written[0].length)
    const give = (word, items) => items.map(item => ({
        ...item,
        textEdit: { range: page.rangeOf(offset - word.length, offset), newText: item.newText ?? item.label },
        newText: undefined,
    }))

    if (tag.startsWith('/')) return give(tag, closings(around))
    if (tag.startsWith('include')) return []
    const keyword = KEYWORDS.find(keyword => tag.startsWith(keyword))
    // Behind a quote stands a text; behind the first blank, what a condition compares with.
    const rest = keyword === undefined ? tag : tag.slice(keyword.length).trimStart()
    if (rest.includes("'") || (/optional/.test(keyword) && rest.includes(' '))) return []
    const word = rest.match(repeats(keyword) ? /[^,]*$/ : /\S*$/)[0]
    const keywords = tag === word ? [...closings(around), ...KEYWORDS.map(label => ({ label, kind: CompletionItemKind.Keyword, detail: describe(label) }))] : []
    return give(word, [...keywords, ...names(word, around, sample)])
}

// The way to close what is open, the innermost alone.
function closings(around) {
    const innermost = around.at(-1)
    return innermost ? [{ label: closing(innermost.keyword), kind: CompletionItemKind.Keyword, sortText: ' ' }] : []
}

function names(word, around, sample) {
    const steps = word.split('::').slice(0, -1)
    const prefix = steps.map(step => step + '::').join('')
    const below = steps.length ? sample.namesIn(referenceTo(steps), around) : sample.namesIn(undefined, around)
    const items = below.filter(([key]) => !/[{}\s']|::/.test(key)).map(([key, value]) => ({
        label: prefix + key,
        kind: CompletionItemKind.Variable,
        detail: show(value).slice(0, 60),
    }))
    return steps.length === 0 ? [...items, ...sections(around, sample)] : items
}

function referenceTo(steps) {
    const star = steps.indexOf('*')
    return star < 0 ? { section: null, path: steps } : { section: steps.slice(0, star).join('::'), path: steps.slice(star + 1) }
}

// What the repeated sections in scope offer: their element, what is in it, and its key.
function sections(around, sample) {
    return around.filter(({ keyword }) => repeats(keyword)).flatMap(({ name }, at, open) => {
        if (name === undefined || (name === '' && at !== open.length - 1)) return []
        const before = name === '' ? '' : `${name}::`
        const inside = sample.namesIn({ section: name, path: [] }, around)
        return [
            { label: `${before}*`, kind: CompletionItemKind.Struct, detail: 'the element that is visited' },
            { label: `${before}[*]`, kind: CompletionItemKind.Struct, detail: 'its key' },
            ...inside.map(([key, value]) => ({ label: `${before}*::${key}`, kind: CompletionItemKind.Field, detail: show(value).slice(0, 60) })),
        ]
    })
}

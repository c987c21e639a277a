import { closing, describe, placeOf } from './language.js'
import { opensSection } from './page.js'
import { show } from './sample.js'

export function hover(page, position, sample, manual) {
    const tag = page.tagAt(position)
    if (!tag) return null
    const range = page.rangeOf(tag.start, tag.stop)
    const lines = tag.keyword.startsWith('/') ? ending(page, tag) : beginning(page, tag, sample, manual)
    return { range, contents: { kind: 'markdown', value: lines.join('\n\n') } }
}

function beginning(page, tag, sample, manual) {
    const href = manual(placeOf(tag.keyword))
    const lines = [describe(tag.keyword) + (href ? ` [Manual](${href})` : '')]
    if (tag.keyword === 'include') lines.push(tag.file ? code(tag.file) : 'There is no such file.')
    if (opensSection(tag.keyword) && tag.end === undefined) lines.push(`It is not ended: ${code(`{${closing(tag.keyword)}}`)} is missing.`)
    if (!sample.isEmpty) {
        const around = page.sectionsAt(tag.start)
        for (const reference of tag.references ?? []) lines.push(`${code(reference.text)}: ${code(show(sample.find(reference, around)))}`)
    }
    return lines
}

function ending(page, tag) {
    const opened = page.tags.filter(({ end }) => end !== undefined && page.tags[end] === tag)
    return opened.length === 0 ? ['Ends no section.'] : opened.map(begin => `Ends ${code(page.quote(begin))} of line ${page.lineOf(begin)}.`)
}

// As code in Markdown, whatever the text holds.
function code(text) {
    const fence = '`'.repeat(1 + Math.max(0, ...(text.match(/`+/g) ?? []).map(run => run.length)))
    return `${fence} ${text.replace(/\s+/g, ' ')} ${fence}`
}

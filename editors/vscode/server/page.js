import { TextDocument } from 'vscode-languageserver-textdocument'

// A text and what "template editor" says about it. The document itself may have changed since.
export class Page {
    #lines
    #hasPairs

    constructor(uri, text, { findings, tags, data = [], manual = '' }) {
        this.document = TextDocument.create(uri, '', 0, text)
        this.text = text
        this.uri = uri
        this.dataFiles = data
        this.manual = manual
        this.#lines = [0]
        for (let at = 0; (at = text.indexOf('\n', at)) >= 0;) this.#lines.push(++at)
        this.#hasPairs = /[\ud800-\udbff]/.test(text)
        this.findings = findings.map(finding => ({
            ...finding,
            range: this.rangeOf(this.#offset(finding.line, finding.column), this.#offset(finding.endLine, finding.endColumn)),
        }))
        const unitOf = unitsOfBytes(text)
        this.tags = tags.map(tag => ({ ...tag, start: unitOf(tag.start), stop: unitOf(tag.stop) }))
    }

    // Columns count characters, where a string of ours has two units for some.
    #offset(line, column) {
        const start = this.#lines[line - 1] ?? this.text.length
        if (!this.#hasPairs) return start + column - 1
        let offset = start
        for (let count = 1; count < column; count++) offset += this.text.codePointAt(offset) > 0xffff ? 2 : 1
        return offset
    }

    rangeOf(start, stop) {
        return { start: this.document.positionAt(start), end: this.document.positionAt(stop) }
    }

    tagAt(position) {
        const offset = this.document.offsetAt(position)
        return this.tags.find(({ start, stop }) => start <= offset && offset < stop)
    }

    // The sections that are open where this offset is, the outermost first.
    sectionsAt(offset) {
        return this.tags.filter(({ keyword, stop, end }) => opensSection(keyword)
            && stop <= offset && (end === undefined || this.tags[end].start >= offset))
    }

    lineOf({ start }) {
        return this.document.positionAt(start).line + 1
    }

    quote({ start, stop }) {
        const text = this.text.slice(start, stop).replace(/\s+/g, ' ')
        return text.length > 60 ? text.slice(0, 57) + '…' : text
    }
}

export const opensSection = keyword => /^(!?optional|r?dynamic)$/.test(keyword)
export const repeats = keyword => /^r?dynamic$/.test(keyword)

// Gives the place in a string for one in its bytes; the places come in ascending order.
function unitsOfBytes(text) {
    if (Buffer.byteLength(text) === text.length) return byte => byte
    let at = 0
    let bytes = 0
    return byte => {
        for (; bytes < byte; at++) {
            const unit = text.charCodeAt(at)
            // Each half of a pair has two of its four bytes.
            bytes += unit < 0x80 ? 1 : unit < 0x800 || (unit >= 0xd800 && unit < 0xe000) ? 2 : 3
        }
        return at
    }
}

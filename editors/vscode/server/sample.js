import { readFileSync, statSync } from 'node:fs'
import { repeats } from './page.js'

const read = new Map() // of each file: { time, data }

// Data as a template may get it. What is not there is undefined.
export class Sample {
    #data

    constructor(data) {
        this.#data = data
    }

    static of(files) {
        return new Sample(Object.assign({}, ...files.map(contentOf)))
    }

    get isEmpty() {
        return Object.keys(this.#data).length === 0
    }

    // What a reference finds in the first element of each section around it.
    find({ section, path, isKey }, around) {
        if (section === null) return /^-?\d+$/.test(path[0]) ? undefined : walk(this.#data, path)
        const at = around.findLastIndex(({ keyword, name }) => repeats(keyword) && (section === '' || name === section))
        const [key, element] = this.#elementOf(around, at) ?? []
        return isKey ? key : walk(element, path)
    }

    #elementOf(around, at) {
        const list = around[at]?.references?.[0]
        const value = list && this.find(list, around.slice(0, at))
        return isTree(value) ? Object.entries(value)[0] : undefined
    }

    // The names below a value, in the order of the data.
    namesIn(reference, around) {
        const value = reference ? this.find(reference, around) : this.#data
        return isTree(value) && !Array.isArray(value) ? Object.entries(value) : []
    }
}

const isTree = value => typeof value === 'object' && value !== null
const walk = (value, path) => path.reduce((from, key) => isTree(from) && Object.hasOwn(from, key) ? from[key] : undefined, value)

// A file that is not there, or half written, has no names to offer.
function contentOf(file) {
    try {
        const time = statSync(file).mtimeMs
        if (read.get(file)?.time !== time) read.set(file, { time, data: JSON.parse(readFileSync(file, 'utf8')) })
        return read.get(file).data
    } catch {
        return {}
    }
}

// A value in a line.
export function show(value) {
    if (value === undefined) return 'not in the sample'
    const text = JSON.stringify(value)
    return text.length > 200 ? text.slice(0, 199) + '…' : text
}

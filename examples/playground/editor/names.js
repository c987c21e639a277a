// What can stand where the cursor is in a tag: keywords, names of the data, files.

const KEYWORDS = ['include ', 'optional ', '!optional ', 'dynamic ', 'rdynamic ', 'addslashes ', 'htmlentities ', 'htmlspecialchars ', 'rawurlencode ']
const MOST_NAMES = 500

/** A source of completions, from functions that give the data as text and the names of the files. */
export function namesFor({ data, files }) {
  let known = {}
  return context => {
    const before = context.state.sliceDoc(0, context.pos)
    const content = openTag(before)
    if (content === null) return null
    try { known = JSON.parse(data()) } catch { /* half typed: the last data will do */ }
    const options = optionsFor(content, openSections(before), known, files())
    return { from: context.pos - /[^\s,]*$/.exec(content)[0].length, options, validFor: /^[^\s,{}]*$/ }
  }
}

/** The text of the tag that is not closed yet; null outside of tags. */
function openTag(before) {
  const [, braces, content] = /(\{*)([^{}]*)$/.exec(before)
  return braces.length % 2 === 1 && !/^\s/.test(content) ? content : null
}

function optionsFor(content, sections, data, files) {
  const paths = [...pathsOf(data), ...sections.flatMap(section => pathsOfSection(section, sections, data))]
  if (/^r?dynamic\s/.test(content)) return content.includes(',') ? paths.filter(({ isArray }) => isArray) : []
  if (/^include\s/.test(content)) return [...files.map(label => ({ label, type: 'text' })), ...paths.filter(({ isText }) => isText)]
  if (/\s/.test(content)) return paths
  const closing = sections.length ? [{ label: `/${sections.at(-1).keyword}`, type: 'keyword', boost: 1 }] : []
  return [...paths, ...closing, ...KEYWORDS.map(word => ({ label: word.trim(), apply: word, type: 'keyword' }))]
}

/** The sections that are open at the end of a text, the innermost last. */
function openSections(text) {
  const open = []
  for (const [, keyword, rest] of text.matchAll(/\{(\/?!?(?:optional|r?dynamic))([^{}]*)\}/g)) {
    if (keyword.startsWith('/')) {
      open.pop()
    } else {
      const [name, path] = rest.includes(',') ? rest.trim().split(/,(.*)/s) : ['', rest.trim()]
      open.push({ keyword: keyword.replace('!', ''), name, path })
    }
  }
  return open
}

/** References to the element of a repeated section, as the first element shows them. */
function pathsOfSection({ keyword, name, path }, sections, data) {
  if (keyword === 'optional') return []
  const rows = find(path, sections, data)
  const element = Object.values(Object(rows?.num ?? rows))[0]
  const prefix = name === '' ? '' : `${name}::`
  return [option(`${prefix}*`, element), { label: `${prefix}[*]`, type: 'variable' }, ...pathsOf(element, `${prefix}*::`)]
}

function find(path, sections, data) {
  const steps = path.split('::')
  const star = steps.indexOf('*')
  if (star < 0) return steps.reduce((value, step) => value?.[step], data)
  const around = sections.findLast(section => section.keyword !== 'optional' && section.path !== path && (star === 0 || section.name === steps[0]))
  const rows = around && find(around.path, sections.slice(0, sections.indexOf(around)), data)
  return steps.slice(star + 1).reduce((value, step) => value?.[step], Object.values(Object(rows?.num ?? rows))[0])
}

function pathsOf(value, prefix = '', options = []) {
  if (value === null || typeof value !== 'object' || Array.isArray(value)) return options
  for (const [key, entry] of Object.entries(value)) {
    if (options.length >= MOST_NAMES || /[{}]/.test(key)) break
    options.push(option(prefix + key, entry))
    pathsOf(entry, `${prefix}${key}::`, options)
  }
  return options
}

const option = (label, value) => ({
  label,
  type: 'variable',
  detail: Array.isArray(value) ? `${value.length} elements` : value !== null && typeof value === 'object' ? 'array' : String(value).slice(0, 30),
  isArray: value !== null && typeof value === 'object',
  isText: typeof value === 'string',
})

// The editor: renders as one types, shows what came of it, and keeps the state in the address.

import { paint } from './tags.js'

const PAUSE = 150   // milliseconds without a key before it renders

const element = id => document.getElementById(id)
const [template, data, select, complaints, status] = ['template', 'data', 'example', 'complaints', 'status'].map(element)
const canvas = template.previousElementSibling
const examples = JSON.parse(element('examples').textContent)
let marked = null   // the tag at the first fault or hint
let timer, request

function repaint() {
  paint(canvas, template.value, marked)
  canvas.append('\n')   // as high as the editor when the last line is empty
  canvas.scrollTop = template.scrollTop
}

// ---- The state as text, for the address: base64url of JSON

function encode(state) {
  const bytes = new TextEncoder().encode(JSON.stringify(state))
  const binary = Array.from(bytes, byte => String.fromCharCode(byte)).join('')
  return btoa(binary).replaceAll('+', '-').replaceAll('/', '_').replace(/=+$/, '')
}

/** Null for what is no state. */
function decode(text) {
  try {
    const binary = atob(text.replaceAll('-', '+').replaceAll('_', '/'))
    const state = JSON.parse(new TextDecoder().decode(Uint8Array.from(binary, letter => letter.charCodeAt(0))))
    return typeof state.template === 'string' && typeof state.data === 'string' ? state : null
  } catch {
    return null
  }
}

// ---- Asking

function isExample() {
  const example = examples[select.value]
  return example.template === template.value && example.data === data.value
}

function remember() {
  const address = isExample()
    ? `/?example=${select.value}`
    : `/#${encode({ template: template.value, data: data.value })}`
  try {
    history.replaceState(null, '', address)
  } catch {
    // a browser may limit how often the address changes; the next change will do
  }
}

async function render() {
  clearTimeout(timer)
  request?.abort()
  const mine = request = new AbortController()
  remember()
  let answer
  try {
    const response = await fetch('/render', {
      method: 'POST',
      headers: { 'Content-Type': 'application/json' },
      body: JSON.stringify({ template: template.value, data: data.value }),
      signal: mine.signal,
    })
    answer = await response.json()
  } catch (failure) {
    if (mine.signal.aborted) return
    answer = { fault: 'The server does not answer. Is ./dev serve running?' }
  }
  if (mine === request) show(answer)
}

function renderSoon() {
  marked = null
  repaint()
  clearTimeout(timer)
  timer = setTimeout(render, PAUSE)
}

// ---- Showing

function show({ result = null, complaints: said = [], hints = [], microseconds, fault, of }) {
  const entries = [
    ...said,
    ...fault ? [{ level: of === 'data' ? 'Data' : 'Not rendered', message: of === 'data' ? placeInData(fault) : fault }] : [],
    ...hints.map(hint => ({ level: 'Hint', ...hint })),
  ]
  complaints.replaceChildren(...entries.map(entry))
  complaints.hidden = entries.length === 0
  const first = entries.find(({ line }) => line)
  marked = first ? { at: offset(first), as: first.level === 'Hint' ? 'hint' : 'fault' } : null
  repaint()

  const failed = result === null
  data.setAttribute('aria-invalid', of === 'data')
  template.setAttribute('aria-invalid', failed && of !== 'data')
  for (const id of ['text', 'page']) element(id).classList.toggle('stale', failed)
  status.textContent = failed ? 'no result' : [size(result), time(microseconds)].join(' · ')
  if (failed) return
  element('text').textContent = result
  element('page').srcdoc = result
}

function entry({ level, message, line, column }) {
  const item = document.createElement('li')
  item.className = { Hint: 'hint', Notice: 'notice', Deprecated: 'notice' }[level] ?? 'fault'
  const name = document.createElement('b')
  name.textContent = level
  item.append(name, ' ', message)
  if (line) {
    const place = document.createElement('button')
    place.type = 'button'
    place.textContent = `line ${line}, column ${column}`
    place.addEventListener('click', () => goTo({ line, column }))
    item.append(' ', place)
  }
  return item
}

/** The browser's own words say where a text stops being JSON. */
function placeInData(fault) {
  try {
    JSON.parse(data.value)
    return fault
  } catch ({ message }) {
    return `This is not JSON: ${message}`
  }
}

const size = text => {
  const bytes = new TextEncoder().encode(text).length
  return bytes === 1 ? '1 byte' : `${bytes.toLocaleString('en')} bytes`
}
const time = microseconds => microseconds < 1000 ? `${Math.round(microseconds)} µs` : `${(microseconds / 1000).toFixed(1)} ms`

/** Places count characters, positions in a text of JavaScript count halves of some of them. */
function offset({ line, column }) {
  const lines = template.value.split('\n')
  const before = lines.slice(0, line - 1).reduce((sum, text) => sum + text.length + 1, 0)
  return before + [...lines[line - 1] ?? ''].slice(0, column - 1).join('').length
}

function goTo(place) {
  const start = offset(place)
  template.focus()
  template.setSelectionRange(start, start + 1)
}

// ---- Views, examples, links

function view(name) {
  element(`view_${name}`).checked = true
  element('text').hidden = name !== 'text'
  element('page').hidden = name !== 'page'
}

const viewFor = text => view(/<[a-z!]/i.test(text) ? 'page' : 'text')

function load(state) {
  template.value = state.template
  data.value = state.data
  marked = null
  repaint()
  viewFor(state.template)
  render()
}

function loadAddress() {
  const state = decode(location.hash.slice(1))
  if (state) element('about').textContent = ''
  load(state ?? { template: template.value, data: data.value })
}

template.addEventListener('input', renderSoon)
data.addEventListener('input', renderSoon)
template.addEventListener('scroll', () => { canvas.scrollTop = template.scrollTop })
for (const radio of document.getElementsByName('view')) radio.addEventListener('change', () => view(radio.value))
select.addEventListener('change', () => {
  element('about').innerHTML = examples[select.value].about   // made by the server, of its own text
  load(examples[select.value])
})
element('toolbar').addEventListener('submit', event => event.preventDefault())
element('copy').addEventListener('click', async ({ currentTarget: button }) => {
  render()
  try {
    await navigator.clipboard.writeText(location.href)
    button.textContent = 'Copied'
  } catch {
    button.textContent = 'It is the address above'
  }
  setTimeout(() => { button.textContent = 'Copy link' }, 2000)
})
addEventListener('keydown', event => {
  if (event.key === 'Enter' && (event.ctrlKey || event.metaKey)) {
    event.preventDefault()
    render()
  }
})
addEventListener('hashchange', loadAddress)

document.body.classList.add('live')
loadAddress()

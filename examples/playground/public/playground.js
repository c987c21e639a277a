// The editor: renders as one types, shows what came of it, and keeps the state in the address.

const PAUSE = 150   // milliseconds without a key before it renders

const element = id => document.getElementById(id)
const [select, complaints, findings, status] = ['example', 'complaints', 'findings', 'status'].map(element)
const examples = JSON.parse(element('examples').textContent)
const { openEditor } = await import(element('examples').dataset.editor).catch(() => import('/areas.js'))

const files = [...document.querySelectorAll('.files dt')].map(({ textContent }) => textContent)
const data = openEditor(element('data'), { changed: typed })
const template = openEditor(element('template'), { changed: typed, names: { data: () => data.text, files: () => files } })

let example = select.value   // the one that was chosen last
let own = null               // what was typed last
let timer, request

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

const state = () => ({ template: template.text, data: data.text })

/** Keeps what is one's own, and says in the box and the address whose text it is. */
function remember() {
  const now = state()
  const known = Object.keys(examples).find(slug => examples[slug].template === now.template && examples[slug].data === now.data)
  if (known) {
    example = known
  } else {
    own = now
    element('own').hidden = false
  }
  select.value = known ?? ''
  element('reset').hidden = Boolean(known)
  try {
    history.replaceState(null, '', known ? `/?example=${known}` : `/#${encode(now)}`)
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
      body: JSON.stringify(state()),
      signal: mine.signal,
    })
    answer = await response.json()
  } catch (failure) {
    if (mine.signal.aborted) return
    answer = { fault: 'The server does not answer. Is ./dev serve running?' }
  }
  if (mine === request) show(answer)
}

function typed() {
  clearTimeout(timer)
  timer = setTimeout(render, PAUSE)
}

// ---- Showing

function show({ result = null, complaints: said = [], hints = [], findings: found = [], microseconds, fault, of, page }) {
  const refused = { level: of === 'data' ? 'Data' : 'Not rendered', message: fault, page }
  const entries = [...said, ...fault ? [refused] : [], ...hints.map(hint => ({ level: 'Hint', ...hint }))]
  const aboutData = found.map(finding => ({ level: 'Check', ...finding }))
  fill(complaints, entries)
  fill(findings, aboutData)
  template.mark([...entries, ...aboutData].filter(({ line }) => line))

  const failed = result === null
  data.invalid = of === 'data'
  template.invalid = failed && of !== 'data'
  for (const id of ['text', 'page']) element(id).classList.toggle('stale', failed)
  status.textContent = failed ? 'no result' : [size(result), time(microseconds)].join(' · ')
  if (failed) return
  element('text').textContent = result
  showPage(result)
}

function fill(list, entries) {
  list.replaceChildren(...entries.map(entry))
  list.hidden = entries.length === 0
}

/** A new frame for each page: another page in the same one would be a step of the browser's way back. */
function showPage(text) {
  const frame = element('page')
  if (frame.srcdoc === text) return
  const next = frame.cloneNode()
  next.srcdoc = text
  frame.replaceWith(next)
}

function entry({ level, message, note, line, column, page }) {
  const item = document.createElement('li')
  item.className = { Hint: 'hint', Check: 'hint', Notice: 'notice', Deprecated: 'notice' }[level] ?? 'fault'
  const name = document.createElement('b')
  name.textContent = level
  item.append(name, ' ', note ? `${message} (${note})` : message)
  if (line) {
    const place = document.createElement('button')
    place.type = 'button'
    place.textContent = `line ${line}, column ${column}`
    place.addEventListener('click', () => template.goTo({ line, column }))
    item.append(' ', place)
  }
  if (page) {
    const link = document.createElement('a')
    link.textContent = 'Manual'
    link.href = page
    link.target = '_blank'
    item.append(' ', link)
  }
  return item
}

const size = text => {
  const bytes = new TextEncoder().encode(text).length
  return bytes === 1 ? '1 byte' : `${bytes.toLocaleString('en')} bytes`
}
const time = microseconds => microseconds < 1000 ? `${Math.round(microseconds)} µs` : `${(microseconds / 1000).toFixed(1)} ms`

// ---- Views, examples, links

function view(name) {
  element(`view_${name}`).checked = true
  element('text').hidden = name !== 'text'
  element('page').hidden = name !== 'page'
}

const viewFor = text => view(/<[a-z!]/i.test(text) ? 'page' : 'text')

function load(wanted) {
  template.load(wanted.template)
  data.load(wanted.data)
  viewFor(wanted.template)
  render()
}

function choose(slug) {
  remember()
  if (select.value === '') history.pushState(null, '', location.href)   // the browser's way back leads to one's own
  example = slug
  element('about').innerHTML = examples[slug].about   // made by the server, of its own text
  load(examples[slug])
}

function loadAddress() {
  const asked = new URLSearchParams(location.search).get('example')
  if (Object.hasOwn(examples, asked)) example = asked
  const wanted = decode(location.hash.slice(1))
  element('about').innerHTML = wanted ? '' : examples[example].about
  load(wanted ?? examples[example])
}

for (const radio of document.getElementsByName('view')) radio.addEventListener('change', () => view(radio.value))
select.addEventListener('change', () => {
  const { value } = select
  if (value) choose(value)
  else load(own)
})
element('reset').addEventListener('click', () => choose(example))
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
addEventListener('popstate', () => {
  // another hash is a place on this page
  if (!location.hash || decode(location.hash.slice(1))) loadAddress()
})

loadAddress()

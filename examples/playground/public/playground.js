// The editor: renders as one types, shows what came of it, and keeps the state in the address.

const element = id => document.getElementById(id)

// ---- Tags in colour

const TAG = /\{\{|\}\}|\{(?=[^ \t\r\n{}])[^{}]*(?:\}|\{[^]*|$)/g
const KEYWORD = /^\{\/?(?:include|!?optional|r?dynamic|addslashes|htmlentities|htmlspecialchars|rawurlencode)/

/** Fills an element with a template's text, in which the tags are marked, and one of them with a class more. */
function paint(target, text, marked = null) {
  const pieces = []
  let done = 0
  for (const { 0: tag, index } of text.matchAll(TAG)) {
    pieces.push(text.slice(done, index))
    const mark = document.createElement('mark')
    mark.className = tag === '{{' || tag === '}}' ? 'brace' : 'tag'
    if (index === marked?.at) mark.classList.add(marked.as)
    const keyword = KEYWORD.exec(tag)?.[0].slice(1)
    if (keyword) {
      const b = document.createElement('b')
      b.textContent = keyword
      mark.append('{', b, tag.slice(keyword.length + 1))
    } else {
      mark.append(tag)
    }
    pieces.push(mark)
    done = index + tag.length
  }
  target.replaceChildren(...pieces, text.slice(done))
}

for (const code of document.querySelectorAll('code.template')) paint(code, code.textContent)

// ---- The state as text: base64url of JSON

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

// ---- The editor

const PAUSE = 150   // milliseconds without a key before it renders

function startEditor() {
  const [template, data, select, complaints, status] = ['template', 'data', 'example', 'complaints', 'status'].map(element)
  const canvas = template.previousElementSibling
  const examples = JSON.parse(element('examples').textContent)
  let marked = null   // the tag at the first fault or hint
  let timer, request

  const repaint = () => {
    paint(canvas, template.value, marked)
    canvas.append('\n')   // as high as the editor when the last line is empty
    canvas.scrollTop = template.scrollTop
  }

  // ---- Asking

  const isExample = () => {
    const example = examples[select.value]
    return example && example.template === template.value && example.data === data.value
  }

  function remember() {
    const address = isExample()
      ? `/?example=${select.value}`
      : `/#${encode({ template: template.value, data: data.value })}`
    history.replaceState(null, '', address)
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
    clearTimeout(timer)
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
}

if (element('template')) startEditor()

// The text areas of the playground as CodeMirror editors. ./dev serve bundles this file with its packages.

import { autocompletion, closeBrackets, closeBracketsKeymap, completionKeymap } from '@codemirror/autocomplete'
import { defaultKeymap, history, historyKeymap, invertedEffects, isolateHistory, redo, redoDepth, undo, undoDepth } from '@codemirror/commands'
import { html } from '@codemirror/lang-html'
import { json } from '@codemirror/lang-json'
import { bracketMatching, ensureSyntaxTree, HighlightStyle, syntaxHighlighting } from '@codemirror/language'
import { linter, lintGutter, setDiagnostics } from '@codemirror/lint'
import { RangeSetBuilder, StateEffect, Transaction } from '@codemirror/state'
import { Decoration, drawSelection, EditorView, highlightActiveLine, keymap, lineNumbers, tooltips, ViewPlugin } from '@codemirror/view'
import { tags } from '@lezer/highlight'
import { namesFor } from './names.js'

/** What is offered: the text, loading another one, marking what was found, going to a place. */
export function openEditor(area, { changed, names }) {
  const label = document.querySelector(`label[for="${area.id}"]`)
  const view = new EditorView({
    doc: area.value,
    parent: area.parentNode,
    extensions: [
      EditorView.contentAttributes.of({ id: area.id, 'aria-label': label.textContent }),
      keymap.of([{ key: 'Mod-Enter', run: () => true }]),   // renders, and makes no line
      area.id === 'data' ? [json(), linter(faultOfJson)] : [html({ autoCloseTags: false }), templateTags],
      names ? autocompletion({ override: [namesFor(names)], icons: false }) : [],
      common,
      EditorView.updateListener.of(update => update.docChanged && !isLoading(update) && changed()),
      EditorView.updateListener.of(({ transactions }) => transactions.forEach(transaction => followLoad(editor, transaction))),
    ],
  })
  area.remove()
  label.addEventListener('click', () => view.focus())
  const editor = { view, loads: 0, depths: new Map(), undone: new Map() }
  editors.push(editor)
  return {
    get text() { return view.state.doc.toString() },
    set invalid(is) { view.contentDOM.setAttribute('aria-invalid', is) },
    load: text => load(editor, text),
    mark(findings) {
      view.dispatch(setDiagnostics(view.state, findings.map(finding => diagnostic(view.state.doc, finding))))
    },
    goTo(place) {
      view.focus()
      view.dispatch({ selection: { anchor: position(view.state.doc, place) }, scrollIntoView: true })
    },
  }
}

// ---- Loading, which is undone and redone in all editors at once as long as nothing was typed since

const editors = []
const loading = StateEffect.define()
const isLoading = ({ transactions }) => transactions.some(transaction => transaction.isUserEvent('load'))

function load(editor, text) {
  const { view } = editor
  const number = ++editor.loads
  view.dispatch({
    changes: { from: 0, to: view.state.doc.length, insert: text },
    selection: { anchor: 0 },
    effects: loading.of(number),
    annotations: [isolateHistory.of('full'), Transaction.addToHistory.of(number > 1), Transaction.userEvent.of('load')],
  })
  editor.depths.set(number, undoDepth(view.state))
}

function followLoad(editor, transaction) {
  for (const { value: number } of transaction.effects.filter(effect => effect.is(loading))) {
    const others = editors.filter(other => other !== editor)
    if (transaction.isUserEvent('undo')) {
      editor.undone.set(number, redoDepth(editor.view.state))
      others.filter(({ depths, view }) => depths.get(number) === undoDepth(view.state)).forEach(({ view }) => undo(view))
    } else if (transaction.isUserEvent('redo')) {
      others.filter(({ undone, view }) => undone.get(number) === redoDepth(view.state)).forEach(({ view }) => redo(view))
    }
  }
}

// ---- Places: lines, and columns in characters

function position(doc, { line, column }) {
  const { from, text } = doc.line(Math.min(line, doc.lines))
  return from + [...text].slice(0, column - 1).join('').length
}

function diagnostic(doc, { level, message, line, column, endLine, endColumn }) {
  const from = position(doc, { line, column })
  const to = endLine ? position(doc, { line: endLine, column: endColumn }) : from
  return { from, to: Math.max(from, to), severity: level === 'Hint' || level === 'Check' ? 'warning' : 'error', message }
}

/** The browser knows whether it is JSON, and the grammar where it stops being it. */
function faultOfJson({ state }) {
  try {
    JSON.parse(state.doc.toString() || '{}')
    return []
  } catch ({ message }) {
    let from = state.doc.length
    ensureSyntaxTree(state, from)?.iterate({ enter: node => { if (node.type.isError) from = Math.min(from, node.from) } })
    return [{ from, to: from, severity: 'error', message }]
  }
}

// ---- The tags of a template, in colour over whatever language stands around them

const TAG = /\{\{|\}\}|\{(?=[^ \t\r\n{}])[^{}]*(?:\}|\{[^]*|$)/g
const KEYWORD = /^\{\/?(?:include|!?optional|r?dynamic|addslashes|htmlentities|htmlspecialchars|rawurlencode)/
const mark = name => Decoration.mark({ class: name })
const [brace, tag, keyword] = ['template-brace', 'template-tag', 'template-keyword'].map(mark)

function decorations({ state }) {
  const builder = new RangeSetBuilder()
  for (const { 0: text, index } of state.doc.toString().matchAll(TAG)) {
    builder.add(index, index + text.length, text === '{{' || text === '}}' ? brace : tag)
    const length = KEYWORD.exec(text)?.[0].length
    if (length) builder.add(index + 1, index + length, keyword)
  }
  return builder.finish()
}

const templateTags = ViewPlugin.define(view => ({
  decorations: decorations(view),
  update(update) { if (update.docChanged) this.decorations = decorations(update) },
}), { decorations: plugin => plugin.decorations })

// ---- What both have

const common = [
  lineNumbers(),
  lintGutter(),
  history(),
  invertedEffects.of(({ effects }) => effects.filter(effect => effect.is(loading))),
  drawSelection(),
  highlightActiveLine(),
  closeBrackets(),
  bracketMatching(),
  tooltips({ parent: document.body }),
  EditorView.lineWrapping,
  keymap.of([...closeBracketsKeymap, ...completionKeymap, ...historyKeymap, ...defaultKeymap]),
  syntaxHighlighting(HighlightStyle.define([
    { tag: [tags.tagName, tags.angleBracket, tags.attributeName], class: 'code-markup' },
    { tag: [tags.propertyName, tags.keyword], class: 'code-name' },
    { tag: [tags.string, tags.attributeValue, tags.number, tags.bool, tags.null], class: 'code-value' },
    { tag: tags.comment, class: 'code-comment' },
  ])),
]

// Compares what the grammar marks as invalid with what the engine refuses.
// Reads from standard input, a line each, [template, refused] in JSON.
import { readFileSync } from 'node:fs'
import { createRequire } from 'node:module'
import { createInterface } from 'node:readline'

const [modules, grammarFile] = process.argv.slice(2)
const require = createRequire(modules + '/')
const textmate = require('vscode-textmate')
const oniguruma = require('vscode-oniguruma')

const wasm = readFileSync(require.resolve('vscode-oniguruma/release/onig.wasm'))
await oniguruma.loadWASM(wasm.buffer.slice(wasm.byteOffset, wasm.byteOffset + wasm.byteLength))

const registry = new textmate.Registry({
  onigLib: Promise.resolve({
    createOnigScanner: patterns => new oniguruma.OnigScanner(patterns),
    createOnigString: text => new oniguruma.OnigString(text),
  }),
  // HTML is left out on purpose: only the tags are judged here.
  loadGrammar: async scope => scope === 'text.html.phptemplate'
    ? textmate.parseRawGrammar(readFileSync(grammarFile, 'utf8'), grammarFile)
    : null,
})
const grammar = await registry.loadGrammar('text.html.phptemplate')

function marksFault(template) {
  let stack = textmate.INITIAL
  return template.split('\n').some(line => {
    const { tokens, ruleStack } = grammar.tokenizeLine(line, stack)
    stack = ruleStack
    return tokens.some(token => token.scopes.some(scope => scope.startsWith('invalid.')))
  })
}

let passed = 0
let failed = 0
for await (const line of createInterface({ input: process.stdin })) {
  const [template, refused] = JSON.parse(line)
  if (marksFault(template) === refused) {
    passed++
  } else if (++failed <= 20) {
    console.log(`${JSON.stringify(template)}: the engine ${refused ? 'refuses' : 'takes'} it, the grammar does not`)
  }
}
console.log(`tags judged alike by grammar and engine: ${passed} of ${passed + failed}`)
process.exit(failed || !passed ? 1 : 0)

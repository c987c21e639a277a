import { DiagnosticSeverity } from 'vscode-languageserver/node'

const LONGEST_MESSAGE = 500
// Where the manual explains a message: what it begins with, and the heading.
const HEADINGS = [
    ['Could not open file', 'could-not-open-file'],
    ['Missing closing tag', 'missing-closing-tag-in'],
    ['Unexpected closing', 'unexpected-closing--tag-in'],
    ['Bad formated parameter', 'bad-formated-parameter'],
    ['Variable block bad parameter', 'variable-block-bad-parameter'],
    ['Dynamic block bad parameter', 'dynamic-block-bad-parameter'],
    ['Include block bad parameter', 'include-block-bad-parameter'],
    ['Template nesting', 'template-nesting-is-too-deep-in'],
]

export function diagnosticsOf(page, manual) {
    return page.findings.map(({ range, severity, rule, message, note }) => {
        const text = note ? `${message} (${note})` : message
        const href = manual(placeInManual(rule, message))
        return {
            range,
            severity: severity === 'error' ? DiagnosticSeverity.Error : DiagnosticSeverity.Information,
            source: 'template',
            code: rule,
            ...(href && { codeDescription: { href } }),
            message: text.length > LONGEST_MESSAGE ? text.slice(0, LONGEST_MESSAGE) + '…' : text,
        }
    })
}

function placeInManual(rule, message) {
    if (rule !== 'fault') return 'cli.md#hints'
    const heading = HEADINGS.find(([beginning]) => message.startsWith(beginning))
    return 'messages.md' + (heading ? `#${heading[1]}` : '')
}

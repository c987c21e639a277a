// The language server: an editor speaks to it over stdio or a pipe, and what the language is, it asks
// of "template editor".
import { isAbsolute, join, relative } from 'node:path'
import { fileURLToPath, pathToFileURL } from 'node:url'
import {
    createConnection, MessageType, ProposedFeatures, ShowMessageNotification, TextDocuments, TextDocumentSyncKind,
} from 'vscode-languageserver/node'
import { TextDocument } from 'vscode-languageserver-textdocument'
import { complete } from './completion.js'
import { diagnosticsOf } from './diagnostics.js'
import { hover } from './hover.js'
import { definition, folding, symbols } from './outline.js'
import { Page } from './page.js'
import { Sample } from './sample.js'
import { TemplateProcess } from './template-process.js'

const connection = createConnection(ProposedFeatures.all)
const documents = new TextDocuments(TextDocument)
const pages = new Map() // of each document's URI: { version, page, a promise }
const outdated = new Set() // URIs whose findings are being asked for
let root, settings, template

connection.onInitialize(({ rootUri, workspaceFolders, initializationOptions }) => {
    const uri = workspaceFolders?.[0]?.uri ?? rootUri
    root = uri?.startsWith('file:') ? fileURLToPath(uri) : process.cwd()
    settings = { command: ['template'], data: '', includePath: [], allowRaw: [], manual: '', ...initializationOptions }
    template = new TemplateProcess(commandLine(settings), root, reason =>
        connection.sendNotification(ShowMessageNotification.type, { type: MessageType.Error, message: `The templates are not checked: ${reason}` }))
    return {
        serverInfo: { name: 'template' },
        capabilities: {
            textDocumentSync: TextDocumentSyncKind.Incremental,
            completionProvider: { triggerCharacters: ['{', '/', '!', ':', ' ', ','] },
            hoverProvider: true,
            definitionProvider: true,
            documentSymbolProvider: true,
            foldingRangeProvider: true,
        },
    }
})
connection.onShutdown(() => template.end())
connection.onExit(() => template?.end())

function commandLine({ command, includePath, allowRaw }) {
    const options = [...includePath.map(folder => `--include-path=${folder}`), ...allowRaw.map(name => `--allow-raw=${name}`)]
    return [...[command].flat(), 'editor', ...options]
}

// Names are those that an include tag would use, so that a circle is seen as one.
function nameOf({ uri }) {
    if (!uri.startsWith('file:')) return uri
    const name = relative(root, fileURLToPath(uri))
    return name.startsWith('..') || isAbsolute(name) ? fileURLToPath(uri) : name
}

// What is known of the document as it stands now.
function pageOf(document) {
    const known = pages.get(document.uri)
    if (known?.version === document.version) return known.page
    const text = document.getText().toWellFormed() // JSON takes no half characters
    const page = template.ask({ name: nameOf(document), text }).then(answer => new Page(document.uri, text, answer))
    pages.set(document.uri, { version: document.version, page })
    return page
}

function sampleFor(page) {
    const files = settings.data ? [settings.data].flat() : page.dataFiles
    return Sample.of(files.map(file => isAbsolute(file) ? file : join(root, file)))
}

// A link to a page of the manual, as a URL or as a file of this machine.
function manual(place, page) {
    const base = settings.manual || page.manual
    if (!base) return undefined
    return (/^\w+:/.test(base) ? base.replace(/\/$/, '') : pathToFileURL(base).href) + '/' + place
}

// While an answer is awaited, further keys only note that another will be needed.
async function publish(uri) {
    if (outdated.has(uri)) return
    outdated.add(uri)
    try {
        for (;;) {
            const document = documents.get(uri)
            if (!document) return
            const { version } = document
            const page = await pageOf(document)
            if (documents.get(uri)?.version !== version) continue
            connection.sendDiagnostics({ uri, version, diagnostics: diagnosticsOf(page, place => manual(place, page)) })
            return
        }
    } catch (error) {
        connection.console.error(`${uri}: ${error.message}`)
    } finally {
        outdated.delete(uri)
    }
}

documents.onDidChangeContent(({ document }) => void publish(document.uri))
// What others include may have changed.
documents.onDidSave(() => {
    pages.clear()
    documents.all().forEach(({ uri }) => void publish(uri))
})
documents.onDidClose(({ document: { uri } }) => {
    pages.delete(uri)
    connection.sendDiagnostics({ uri, diagnostics: [] })
})

// Answers a request about a document; what cannot be told is nothing.
const answer = (nothing, give) => async parameters => {
    const document = documents.get(parameters.textDocument.uri)
    if (!document) return nothing
    try {
        return give(await pageOf(document), parameters.position)
    } catch (error) {
        connection.console.error(error.message)
        return nothing
    }
}
connection.onHover(answer(null, (page, position) => hover(page, position, sampleFor(page), place => manual(place, page))))
connection.onCompletion(answer([], (page, position) => complete(page, position, sampleFor(page))))
connection.onDefinition(answer(null, definition))
connection.onDocumentSymbol(answer([], symbols))
connection.onFoldingRanges(answer([], folding))

documents.listen(connection)
connection.listen()

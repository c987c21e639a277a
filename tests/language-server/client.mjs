// A client of the language server over stdio, as an editor is one.
import { spawn } from 'node:child_process'
import { readFileSync } from 'node:fs'
import { createRequire } from 'node:module'
import { pathToFileURL } from 'node:url'

const extension = process.env.EXTENSION
const { createProtocolConnection, StreamMessageReader, StreamMessageWriter } =
    createRequire(extension + '/')('vscode-languageserver-protocol/node')

export class Client {
    #server
    #connection
    #folder
    #documents = new Map() // of each name: { version, text }
    #published = new Map() // of each URI: what came last
    #awaiting = []
    shown = []

    // Starts a server for the folder, with these settings.
    static async start(folder, settings) {
        const client = new Client(folder)
        await client.#connection.sendRequest('initialize', {
            processId: process.pid, rootUri: pathToFileURL(folder).href, capabilities: {}, initializationOptions: settings,
        })
        await client.#connection.sendNotification('initialized', {})
        return client
    }

    constructor(folder) {
        this.#folder = folder
        this.#server = spawn('node', [`${extension}/dist/server.cjs`, '--stdio'], { stdio: ['pipe', 'pipe', 'inherit'] })
        this.#connection = createProtocolConnection(
            new StreamMessageReader(this.#server.stdout), new StreamMessageWriter(this.#server.stdin))
        this.#connection.onNotification('textDocument/publishDiagnostics', published => {
            this.#published.set(published.uri, published)
            this.#awaiting = this.#awaiting.filter(isMet => !isMet())
        })
        this.#connection.onNotification('window/showMessage', ({ message }) => this.shown.push(message))
        this.#connection.listen()
    }

    uri = name => pathToFileURL(`${this.#folder}/${name}`).href

    // Opens a document, or gives it another text; resolves to the diagnostics of just this text.
    write(name, text) {
        const uri = this.uri(name)
        const version = (this.#documents.get(name)?.version ?? 0) + 1
        this.#documents.set(name, { version, text })
        void (version === 1
            ? this.#connection.sendNotification('textDocument/didOpen', { textDocument: { uri, languageId: 'phptemplate', version, text } })
            : this.#connection.sendNotification('textDocument/didChange', { textDocument: { uri, version }, contentChanges: [{ text }] }))
        return new Promise(resolve => this.#awaiting.push(() => {
            const published = this.#published.get(uri)
            return published?.version >= version && (resolve(published.version === version ? published.diagnostics : undefined), true)
        }))
    }

    // Asks about a document, or about the place in it behind this text.
    ask(method, name, before) {
        const left = this.#documents.get(name).text.split(before, 1)[0] + before
        const position = { line: left.split('\n').length - 1, character: left.length - left.lastIndexOf('\n') - 1 }
        return this.#connection.sendRequest(`textDocument/${method}`, { textDocument: { uri: this.uri(name) }, ...(before && { position }) })
    }

    // Milliseconds that the server and the processes it has started have taken of a processor.
    processorTime() {
        const { pid } = this.#server
        const children = readFileSync(`/proc/${pid}/task/${pid}/children`, 'utf8').split(' ').filter(Boolean)
        return [pid, ...children].map(id => readFileSync(`/proc/${id}/stat`, 'utf8').split(') ')[1].split(' '))
            .reduce((sum, fields) => sum + 10 * (Number(fields[11]) + Number(fields[12])), 0)
    }

    async end() {
        await this.#connection.sendRequest('shutdown')
        await this.#connection.sendNotification('exit')
        return new Promise(resolve => this.#server.once('exit', resolve))
    }
}

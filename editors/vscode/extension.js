// Starts the language server that lies beside it.
import { join } from 'node:path'
import { commands, window, workspace } from 'vscode'
import { LanguageClient, TransportKind } from 'vscode-languageclient/node'

let client

export async function activate(context) {
    context.subscriptions.push(
        commands.registerCommand('phptemplate.restart', restart),
        workspace.onDidChangeConfiguration(change => change.affectsConfiguration('phptemplate') && restart()),
    )
    await start()
}

export const deactivate = () => client?.stop()

async function start() {
    const { command, data, includePath, allowRaw, manual } = workspace.getConfiguration('phptemplate')
    const server = { module: join(__dirname, 'server.cjs'), transport: TransportKind.ipc }
    client = new LanguageClient('phptemplate', 'PHP Template', server, {
        documentSelector: [{ language: 'phptemplate' }],
        initializationOptions: { command, data, includePath, allowRaw, manual },
    })
    await client.start()
}

async function restart() {
    try {
        await client?.stop()
        await start()
    } catch (error) {
        window.showErrorMessage(`The language server of PHP Template does not start: ${error.message}`)
    }
}

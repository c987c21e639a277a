import { spawn } from 'node:child_process'
import { createInterface } from 'node:readline'

// How often a process that ends on its own is started again.
const MOST_STARTS = 5

// Keeps "template editor" running. A question is one line, and so is its answer, in the same order.
export class TemplateProcess {
    #command
    #folder
    #giveUp
    #child
    #waiting = []
    #starts = 0
    #reason

    constructor(command, folder, giveUp) {
        this.#command = command
        this.#folder = folder
        this.#giveUp = giveUp
    }

    ask(question) {
        return new Promise((resolve, reject) => {
            if (this.#reason) return reject(new Error(this.#reason))
            this.#child ??= this.#start()
            this.#waiting.push({ resolve, reject })
            this.#child.stdin.write(JSON.stringify(question) + '\n')
        })
    }

    end() {
        this.#reason = 'The server has ended.'
        this.#child?.stdin.end()
    }

    #start() {
        this.#starts++
        const [program, ...options] = this.#command
        const child = spawn(program, options, { cwd: this.#folder, stdio: ['pipe', 'pipe', 'pipe'] })
        let said = ''
        child.stderr.on('data', data => { said = (said + data).slice(-1000) })
        child.stdin.on('error', () => {})
        child.on('error', error => this.#ended(child, error.code === 'ENOENT' ? `there is no command "${program}".` : error.message, true))
        child.on('close', () => this.#ended(child, said.trim() || `"${program}" has ended.`))
        createInterface({ input: child.stdout }).on('line', line => this.#answered(line))
        return child
    }

    #answered(line) {
        const { resolve, reject } = this.#waiting.shift() ?? {}
        try {
            const answer = JSON.parse(line)
            answer.error ? reject?.(new Error(answer.error)) : resolve?.(answer)
        } catch {
            reject?.(new Error(`This is no answer: ${line.slice(0, 200)}`))
        }
    }

    #ended(child, reason, forever = false) {
        if (child !== this.#child) return
        this.#child = undefined
        if (!this.#reason && (forever || this.#starts >= MOST_STARTS)) {
            this.#reason = reason
            this.#giveUp(reason)
        }
        for (const { reject } of this.#waiting.splice(0)) reject(new Error(reason))
    }
}

// Starting the playground and the browser that looks at it.

import { spawn } from 'node:child_process'
import { readFileSync } from 'node:fs'
import { createRequire } from 'node:module'
import { connect, createServer } from 'node:net'

const packages = createRequire(process.env.PACKAGES)
const { chromium } = packages('playwright-core')

/** The script that looks for what keeps people out: faint texts, controls without a name, wrong roles. */
export const axe = readFileSync(packages.resolve('axe-core/axe.min.js'), 'utf8')

const freePort = () => new Promise(done => {
  const server = createServer().listen(0, '127.0.0.1', () => {
    const { port } = server.address()
    server.close(() => done(port))
  })
})

const answers = port => new Promise(done => {
  const socket = connect(port, '127.0.0.1', () => { socket.destroy(); done(true) })
  socket.on('error', () => done(false))
})

/** The playground as ./dev serve starts it, on a port of its own. */
export async function startSite() {
  const port = await freePort()
  const { PHP, TEMPLATE_SO } = process.env
  const server = spawn(PHP, ['-n', '-d', `extension=${TEMPLATE_SO}`, '-S', `127.0.0.1:${port}`, 'examples/playground/router.php'], { stdio: 'ignore' })
  process.on('exit', () => server.kill('SIGINT'))
  for (let tries = 0; !await answers(port); tries++) {
    if (tries > 200 || server.exitCode !== null) throw new Error('the playground does not start')
    await new Promise(done => setTimeout(done, 50))
  }
  return { address: `http://127.0.0.1:${port}`, stop: () => server.kill('SIGINT') }
}

/** Another site on this machine, which notes what it is asked for. A connection on which nothing is said is no request. */
export async function startElsewhere() {
  const requests = []
  const server = createServer(socket => {
    socket.on('error', () => {})
    socket.once('data', data => {
      requests.push(data.toString('latin1').split('\r\n')[0])
      socket.end('HTTP/1.1 200 OK\r\nContent-Length: 0\r\nConnection: close\r\n\r\n')
    })
  })
  await new Promise(done => server.listen(0, '127.0.0.1', done))
  return { address: `http://127.0.0.1:${server.address().port}`, takeRequests: () => requests.splice(0) }
}

/** Debian's Chromium. Its own sandbox does not work in name spaces and for root, and all that it sees is our own page. */
export const startBrowser = () => chromium.launch({ executablePath: '/usr/bin/chromium', args: ['--no-sandbox', '--disable-dev-shm-usage'] })

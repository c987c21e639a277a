// The playground in a browser: typing, faults, the gallery, scripts that must not run, keys, a narrow screen, links.

import assert from 'node:assert/strict'
import { readFileSync } from 'node:fs'
import { axe, startBrowser, startElsewhere, startSite } from './harness.mjs'

const site = await startSite()
const browser = await startBrowser()
const elsewhere = await startElsewhere()
let passed = 0, failed = 0

/** A check gets a page of its own, on which nothing may go wrong but what the check expects. */
async function check(what, body, { path = '/', ...options } = {}) {
  const context = await browser.newContext({ viewport: { width: 1280, height: 860 }, ...options })
  const page = await context.newPage()
  const errors = []
  page.on('pageerror', error => errors.push(error.message))
  page.on('dialog', dialog => { errors.push(`a dialog: ${dialog.message()}`); dialog.dismiss() })
  page.setDefaultTimeout(15_000)
  try {
    if (path !== null) await open(page, path)
    await body(page, context)
    assert.deepEqual(errors, [])
    assert.deepEqual(elsewhere.takeRequests(), [], 'another site was asked')
    passed++
    console.log(`ok   ${what}`)
  } catch (error) {
    failed++
    console.log(`FAIL ${what}\n${String(error.message).replace(/^/gm, '       ')}`)
  } finally {
    await context.close()
  }
}

// ---- What one does and sees

async function open(page, path) {
  await page.goto(site.address + path)
  if (await page.locator('#status').count()) await page.locator('#status:not(:empty)').waitFor({ state: 'attached' })
}

const typed = (page, id = 'template') => page.locator(`#${id} .cm-line`).allTextContents().then(lines => lines.join('\n'))
const text = page => page.locator('#text').textContent()
const complaints = page => page.locator('#complaints li').allInnerTexts()
const framed = page => page.frameLocator('#page').locator('body')

/** Waits until a value is what it should be, and says what it was when it is not. */
async function becomes(read, expected, seconds = 15) {
  const deadline = Date.now() + seconds * 1000
  let seen
  do {
    seen = await read()
    try { assert.deepEqual(seen, expected); return } catch {}
    await new Promise(done => setTimeout(done, 40))
  } while (Date.now() < deadline)
  assert.deepEqual(seen, expected)
}

async function write(page, template, data = '{}') {
  await page.fill('#data', data)
  await page.fill('#template', template)
}

const encode = state => Buffer.from(JSON.stringify(state)).toString('base64url')

// ---- Typing

await check('the result follows the typing', async page => {
  await page.locator('#template').press('Control+Home')
  await page.keyboard.type('{title} ', { delay: 15 })
  await becomes(() => text(page), "Fish & chips <h1>Fish &amp; chips</h1>\n<ul>\n  <li>Cod: 9.50</li>\n  <li>Catch of the day: ask us</li>\n</ul>")
  await page.fill('#data', '{"title": "Tea"}')
  await becomes(() => text(page), 'Tea <h1>Tea</h1>\n<ul>\n</ul>')
  assert.match(await page.locator('#status').textContent(), /^27 bytes · [\d.]+ (µs|ms)$/)
})

await check('it asks once for a burst of keys', async page => {
  let asked = 0
  page.on('request', request => asked += request.url().endsWith('/render') ? 1 : 0)
  await page.fill('#template', '')
  await becomes(() => text(page), '')
  asked = 0
  await page.locator('#template').focus()
  await page.keyboard.type('a burst of keys')
  await becomes(() => text(page), 'a burst of keys')
  assert.ok(asked <= 3, `it asked ${asked} times`)
})

await check('an answer that comes late does not replace a newer one', async page => {
  await page.route('**/render', async route => {
    if (route.request().postData().includes('slow')) await new Promise(done => setTimeout(done, 1500))
    await route.continue().catch(() => {})
  })
  await page.fill('#template', 'slow')
  await page.waitForTimeout(400)
  await page.fill('#template', 'quick')
  await becomes(() => text(page), 'quick')
  await page.waitForTimeout(1600)
  assert.equal(await text(page), 'quick')
})

await check('names of the data are offered in a tag', async page => {
  await write(page, '{dynamic o,orders}', '{"orders": [{"customer": "Ann", "items": []}]}')
  await page.locator('#template').press('Control+End')
  await page.keyboard.type('{o::*::c', { delay: 30 })
  await becomes(() => page.locator('[role=option]').allInnerTexts(), ['o::*::customerAnn'])
  await page.waitForTimeout(200)   // a key that comes at once is not yet for the list
  await page.keyboard.press('Enter')
  await becomes(() => typed(page), '{dynamic o,orders}{o::*::customer}')
})

await check('what one has typed stays in the box, in the undo, and on the way back', async page => {
  const own = ['my {own}\n\n', '{"own": 1}']
  const both = async () => [await typed(page), await typed(page, 'data')]
  await write(page, ...own)
  await page.selectOption('#example', 'keys')
  await becomes(() => text(page), 'tea: 2.50\nmilk: 1.20\n')
  for (const wayBack of [() => page.locator('#template').press('Control+z'), () => page.selectOption('#example', 'Your own'), () => page.goBack()]) {
    await wayBack()
    await becomes(both, own)
    await page.click('#reset')
    await becomes(() => page.inputValue('#example'), 'keys')
  }
})

await check('without the bundle there are plain areas', async page => {
  await page.route('**/bundle/*', route => route.abort())
  await open(page, '/')
  await page.fill('textarea#template', 'é\n  {a:::b}')
  await page.locator('#complaints .fault button').click()
  assert.deepEqual(await page.evaluate(() => [document.activeElement.id, document.activeElement.selectionStart]), ['template', 4])
}, { path: null })

// ---- Faults

await check('a warning is shown with its place, which leads there, and the last result stays in sight', async page => {
  await write(page, 'Hello')
  await becomes(() => text(page), 'Hello')
  await page.fill('#template', 'é\n  {a:::b}')
  await becomes(() => complaints(page), ["Warning Bad formated parameter'a:::b': too many : in this template line 2, column 3 Manual"])
  assert.equal(await text(page), 'Hello')
  assert.ok(await page.locator('#text.stale').count())
  assert.equal(await page.locator('.cm-lintRange-error').textContent(), '{a:::b}')
  assert.equal(await page.getAttribute('#template', 'aria-invalid'), 'true')
  await page.click('#complaints button')
  await page.keyboard.type('-')
  assert.equal(await typed(page), 'é\n  -{a:::b}')
  await page.fill('#template', 'Hello again')
  await becomes(() => complaints(page), [])
  assert.equal(await page.locator('.stale, .cm-lintRange').count(), 0)
})

await check('data that is no JSON is told with the place', async page => {
  await page.fill('#data', `{"title": "${'long '.repeat(30)}",\n }`)
  await becomes(async () => /^Data The data cannot be read: .* at line 2, column 2/.test((await complaints(page))[0]), true)
  assert.deepEqual(await page.locator('[aria-invalid=true]').evaluateAll(all => all.map(one => one.id)), ['data'])
})

await check('a server that is gone is told', async page => {
  await page.route('**/render', route => route.abort())
  await page.fill('#template', 'anybody?')
  await becomes(() => complaints(page), ['Not rendered The server does not answer. Is ./dev serve running?'])
})

// ---- The gallery

await check('the list of examples loads one after the other, by keys', async page => {
  const names = await page.locator('#example option:not([hidden])').evaluateAll(options => options.map(option => option.value))
  await page.locator('#example').focus()
  for (const name of names.slice(1, 4)) {
    await page.keyboard.press('ArrowDown')
    await becomes(() => page.evaluate(() => location.search), `?example=${name}`)
  }
  await becomes(() => typed(page).then(template => template.slice(0, 4)), 'p { ')
  await becomes(() => text(page), 'p { color: teal }\na{color:teal}\n{teal} and {}')
})

// ---- Scripts that must not run

const attack = `<script>parent.hit = self.hit = 1; alert(1)</script><img src="${elsewhere.address}/i" onerror="parent.hit = 1; alert(2)"><svg onload="alert(3)"></svg>
<a id="link" href="${elsewhere.address}/">link</a><a id="js" href="javascript:alert(4)">js</a><iframe srcdoc="<script>top.hit = 1</script>"></iframe>
<form action="${elsewhere.address}/"><button id="send">send</button></form><meta http-equiv="refresh" content="0;url=${elsewhere.address}/">
<link rel="stylesheet" href="${elsewhere.address}/a.css"><style>@import url(${elsewhere.address}/b.css); b { color: rgb(1, 2, 3) }</style><b>styled</b>`

await check('a script in the data runs neither in the frame nor around it', async page => {
  await write(page, '<p>{text}</p>', JSON.stringify({ text: attack }))
  await page.check('#view_page', { force: true })
  await becomes(() => framed(page).locator('b').textContent(), 'styled')
  assert.equal(await framed(page).locator('b').evaluate(b => getComputedStyle(b).color), 'rgb(1, 2, 3)')
  for (const id of ['js', 'send', 'link']) {
    await framed(page).locator(`#${id}`).click({ noWaitAfter: true, timeout: 2000 }).catch(() => {})
    await page.waitForTimeout(200)
  }
  assert.equal(await page.evaluate(() => window.hit), undefined)
  assert.equal(await page.evaluate(() => { try { return document.getElementById('page').contentWindow.document } catch { return 'closed' } }), 'closed')
  assert.equal(new URL(page.url()).origin, site.address)
})

await check('markup in template, data, result and messages stays text on the page itself', async page => {
  const markup = '</textarea></script><img src=x onerror="alert(1)">'
  await write(page, `${markup}{a:::<i>b</i>}`, JSON.stringify({ a: markup }))
  await becomes(async () => (await complaints(page))[0]?.includes("'a:::<i>b</i>'"), true)
  await write(page, `${markup}{a}`, JSON.stringify({ a: markup }))
  await becomes(() => text(page), markup + markup)
  assert.equal(await page.locator('img, i').count(), 0)
})

await check('a link to such a page does no harm', async page => {
  await open(page, '/#' + encode({ template: attack, data: '{}' }))
  await becomes(() => framed(page).locator('b').textContent(), 'styled')
  assert.equal(await page.evaluate(() => window.hit), undefined)
}, { path: null })

// ---- Keys

await check('everything can be reached and done with the keys', async page => {
  const reached = []
  for (let key = 0; key < 40; key++) {
    await page.keyboard.press('Tab')
    reached.push(await page.evaluate(() => document.activeElement.id || document.activeElement.textContent.trim()))
  }
  const order = ['Skip to the content', 'example', 'copy', 'template', 'data', 'view_page', 'Files that a template here may include']
  assert.deepEqual([...new Set(reached)].filter(name => order.includes(name)), order)
  await page.focus('#view_page')
  await page.keyboard.press('ArrowRight')
  assert.deepEqual(await page.locator('.shown:not([hidden])').evaluateAll(all => all.map(one => one.id)), ['text'])
  await page.keyboard.press('ArrowLeft')
  assert.deepEqual(await page.locator('.shown:not([hidden])').evaluateAll(all => all.map(one => one.id)), ['page'])
})

await check('Ctrl+Enter renders at once, Tab leaves the editor', async page => {
  await page.clock.install()
  await page.fill('#template', 'at once')
  await page.locator('#template').press('Control+Enter')
  await becomes(() => text(page), 'at once')
  await page.keyboard.press('Tab')
  assert.equal(await page.evaluate(() => document.activeElement.id), 'data')
})

await check('the first stop skips to the content', async page => {
  await page.keyboard.press('Tab')
  assert.ok((await page.locator('.skip').boundingBox()).width > 50)
  await page.keyboard.press('Enter')
  assert.equal(await page.evaluate(() => document.activeElement.id), 'main_content')
  assert.equal(await text(page), readFileSync('examples/first/menu.html', 'utf8').replace(/\n$/, ''))
})

// ---- Screens

for (const width of [320, 390, 700]) {
  await check(`nothing sticks out on a screen of ${width} pixels`, async page => {
    for (const path of ['/?example=an-invoice', '/?example=a-malformed-reference', '/gallery']) {
      await open(page, path)
      assert.equal(await page.evaluate(() => document.documentElement.scrollWidth), width, path)
    }
    await open(page, '/')
    const tops = await page.locator('.panel').evaluateAll(all => all.map(one => one.getBoundingClientRect()))
    assert.ok(tops.every((box, at) => at === 0 || box.top >= tops[at - 1].bottom), 'the panels are not below each other')
  }, { viewport: { width, height: 800 } })
}

await check('a long result scrolls in its own place', async page => {
  await write(page, '{dynamic r}line\n{/dynamic}', JSON.stringify({ r: Array(500).fill(1) }))
  await becomes(() => text(page), 'line\n'.repeat(500))
  await page.check('#view_text', { force: true })
  assert.ok(await page.evaluate(() => document.documentElement.scrollHeight <= innerHeight + 1), 'the page has grown')
})

for (const colorScheme of ['light', 'dark']) {
  await check(`nobody is kept out, in ${colorScheme} colours`, async page => {
    for (const path of ['/?example=a-malformed-reference', '/?example=a-tag-that-was-not-closed', '/gallery']) {
      await open(page, path)
      await page.evaluate(axe)
      const { violations } = await page.evaluate(() => window.axe.run({ exclude: ['#page'] }))
      assert.deepEqual(violations.map(({ id, nodes }) => [id, ...nodes.map(({ html }) => html)]), [], path)
    }
  }, { colorScheme })
}

// ---- Links

await check('the address holds the state', async (page, context) => {
  const state = { template: 'é 😀 {name} {{+/=?&#}\n', data: '{"name": "Ünï ÿ"}' }
  await write(page, state.template, state.data)
  await becomes(() => text(page), 'é 😀 Ünï ÿ {+/=?&#}\n')
  const address = page.url()
  assert.match(address, /\/#[\w-]+$/)
  const other = await context.newPage()
  await other.goto(address)
  await becomes(() => text(other), 'é 😀 Ünï ÿ {+/=?&#}\n')
  assert.deepEqual({ template: await typed(other), data: await typed(other, 'data') }, state)
  await other.reload()
  await becomes(() => typed(other), state.template)
})

await check('the button copies the address', async page => {
  await page.fill('#template', 'to be shared')
  await page.click('#copy')
  await becomes(() => page.textContent('#copy'), 'Copied')
  const copied = await page.evaluate(() => navigator.clipboard.readText())
  assert.deepEqual(JSON.parse(Buffer.from(copied.split('#')[1], 'base64url')).template, 'to be shared')
}, { permissions: ['clipboard-read', 'clipboard-write'] })

await check('an example as it is has a short address, and the way back works', async page => {
  await becomes(async () => page.url(), `${site.address}/?example=keys`)
  await page.goto(`${site.address}/#${encode({ template: 'a', data: '{}' })}`)
  await becomes(() => text(page), 'a')
  await page.goBack()
  await becomes(() => text(page), 'tea: 2.50\nmilk: 1.20\n')
}, { path: '/?example=keys' })

await check('an address that holds nonsense shows an example', async page => {
  for (const nonsense of ['#abc', '#%%%', '#' + encode({ template: 1 }), '#' + encode(null)]) {
    await open(page, '/' + nonsense)
    await becomes(() => text(page).then(result => result.slice(0, 4)), '<h1>')
  }
}, { path: null })

await check('without JavaScript there is the gallery', async page => {
  await page.goto(site.address + '/')
  await page.locator('noscript p').waitFor()
  await page.click('nav >> text=Gallery')
  assert.equal(await page.textContent('h1'), 'Gallery')
}, { javaScriptEnabled: false, path: null })

await browser.close()
site.stop()
console.log(`\n${passed} passed, ${failed} failed`)
process.exit(failed ? 1 : 0)

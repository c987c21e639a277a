// Shows the tags of a template in colour.

const TAG = /\{\{|\}\}|\{(?=[^ \t\r\n{}])[^{}]*(?:\}|\{[^]*|$)/g
const KEYWORD = /^\{\/?(?:include|!?optional|r?dynamic|addslashes|htmlentities|htmlspecialchars|rawurlencode)/

/** Fills an element with a template's text, in which the tags are marked, and one of them with a class more. */
export function paint(target, text, marked = null) {
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

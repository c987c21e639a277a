// The pages of the manual, which the server sends as they are written. ./dev serve bundles this file with its package.

import { marked } from 'marked'

for (const source of document.querySelectorAll('pre.markdown')) {
  const section = source.parentNode
  section.innerHTML = marked.parse(source.textContent)
  // to files of the project that this site does not have
  for (const link of section.querySelectorAll('a[href^="../"]')) link.replaceWith(...link.childNodes)
}
document.getElementById(decodeURIComponent(location.hash.slice(1)))?.scrollIntoView()

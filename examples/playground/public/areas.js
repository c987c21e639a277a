// The plain text areas, for where there is no better editor. Both kinds offer the same.

export function openEditor(area, { changed }) {
  area.addEventListener('input', changed)
  return {
    get text() { return area.value },
    set invalid(is) { area.setAttribute('aria-invalid', is) },
    load(text) { area.value = text },
    mark() {},   // what was found is in the list
    goTo({ line, column }) {
      const lines = area.value.split('\n')
      const before = lines.slice(0, line - 1).reduce((sum, text) => sum + text.length + 1, 0)
      // places count characters, positions halves of some of them
      const start = before + [...lines[line - 1] ?? ''].slice(0, column - 1).join('').length
      area.focus()
      area.setSelectionRange(start, start + 1)
    },
  }
}

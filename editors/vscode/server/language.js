// What each tag does, in a sentence, and where the manual has more.
const TAGS = {
    '': ['Prints the first of these that has a value, else the default.', 'variable-tags'],
    optional: ['Shown when the value is true, or equals the text behind it.', 'conditional-sections'],
    '!optional': ['Shown when the value is false or missing, or does not equal the text behind it.', 'conditional-sections'],
    dynamic: ['Shown once for each element of the list.', 'repeated-sections'],
    rdynamic: ['Shown once for each element of the list, the last one first.', 'repeated-sections'],
    include: ['Another template at this place.', 'includes'],
    htmlspecialchars: ['Prints a value with <, >, & and " escaped for HTML.', 'escaping-tags'],
    htmlentities: ['Prints a value with every character that has an entity as one.', 'escaping-tags'],
    rawurlencode: ['Prints a value as part of a URL.', 'escaping-tags'],
    addslashes: ['Prints a value with quotes and backslashes escaped by a backslash.', 'escaping-tags'],
}

export const KEYWORDS = Object.keys(TAGS).filter(Boolean)

export const describe = keyword => TAGS[keyword]?.[0]
export const placeOf = keyword => `language.md#${TAGS[keyword]?.[1] ?? ''}`
export const closing = keyword => '/' + keyword.replace('!', '')

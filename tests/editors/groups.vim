" Checks what the syntax file makes of places in some templates. g:report is
" the file to write the outcome to.

" [file name, its text, [[what to look at, the group it must have], …]]
let s:pages = [
  \ ['mail.tpl', "Dear {title name 'friend'},", [
  \   ['Dear', ''], ['{', 'phptemplateDelimiter'], ['title', 'phptemplateWordPath'],
  \   ["'friend", 'phptemplateDefault'], ['},', 'phptemplateDelimiter'], [',', '']]],
  \ ['page.html.tpl', '<a href="{rawurlencode url}"><b>{a::b}</b></a>', [
  \   ['a href', 'htmlTagName'], ['"{', 'htmlString'], ['rawurlencode', 'phptemplateEscape'],
  \   ['url}', 'phptemplateWholePath'], ['"><b', 'htmlString'], ['::', 'phptemplateJoint']]],
  \ ['script.tpl', '<script>if (a) {{b = "{c}" }} else { d }</script>', [
  \   ['if', 'javaScriptConditional'], ['{{b', 'phptemplateBrace'], ['c}', 'phptemplateWordPath'],
  \   ['}}', 'phptemplateBrace'], ['{ d', 'javaScriptBraces']]],
  \ ['style.tpl', '<style>p{ color: {colour}; content: "{mark}" }/* {note} */</style>', [
  \   ['color', 'cssTextProp'], ['colour', 'phptemplateWordPath'], ['mark', 'phptemplateWordPath'], ['note', 'phptemplateWordPath']]],
  \ ['comment.tpl', '<!-- {a} {} -->', [
  \   ['<!--', 'htmlComment'], ['a}', 'phptemplateWordPath'], ['{} ', 'phptemplateLiteral']]],
  \ ['sections.tpl', "{dynamic row,rows}{!optional row::*::kind x'it's'y}{row::[*]}{/optional z}{/dynamic}", [
  \   ['dynamic', 'phptemplateLoop'], ['row,', 'phptemplateListName'], [',', 'phptemplateComma'],
  \   ['rows', 'phptemplateNamedListPath'], ['!optional', 'phptemplateConditional'],
  \   ['row::*', 'phptemplateConditionSection'], ['*', 'phptemplateStar'], ['kind', 'phptemplateConditionElement'],
  \   ["x'", 'phptemplateQuotedComparison'], ["it's", 'phptemplateQuoted'], ["y}", 'phptemplateQuotedComparison'],
  \   ['[*', 'phptemplateStar'], ['/optional', 'phptemplateEnd'], ['z', 'phptemplateIgnored'], ['/dynamic', 'phptemplateEnd']]],
  \ ['files.tpl', '{include head and foot.tpl}{includes::file}{optionals}', [
  \   ['include', 'phptemplateInclude'], ['and', 'phptemplateFilePath'], ['s::', 'phptemplateFilePath'],
  \   ['s}', 'phptemplateConditionPath']]],
  \ ['lines.tpl', "{a\n 'two\nlines'}\n<p>", [
  \   ["'two", 'phptemplateDefault'], ['lines', 'phptemplateDefault'], ['p>', 'htmlTagName']]],
  \ ['swallowed.tpl', "{a {b}\n<p>{c}", [
  \   ['{b', 'phptemplateError'], ['<p', 'phptemplateSwallowed'], ['c', 'phptemplateSwallowed']]],
  \ ['faults.tpl', "{a::} {::b} {c::*::*} {*::d} {[*]::e} {x::y::*} {f'g} {include *} {dynamic r,[*]} {optional h:: i} {p::q}", [
  \   ['a::', 'phptemplateWordError'], ['::b', 'phptemplateWordError'], ['c::', 'phptemplateWordError'], ['d', 'phptemplateWordElement'],
  \   ['e}', 'phptemplateWordError'], ['x::', 'phptemplateWordError'], ["f'", 'phptemplateQuoteError'], ['*} {d', 'phptemplateFileError'],
  \   ['[*]} {o', 'phptemplateNamedListError'], ['h::', 'phptemplateConditionError'], ['p::', 'phptemplateWordPath']]],
  \ ]

let s:passed = 0
let s:failed = 0
let s:report = []
for [s:name, s:text, s:places] in s:pages
  execute 'edit!' tempname() .. '.' .. s:name
  call setline(1, split(s:text, "\n"))
  for [s:needle, s:expected] in s:places
    call cursor(1, 1)
    let [s:line, s:column] = searchpos('\C\V' .. s:needle, 'cW')
    let s:group = s:line ? synIDattr(synID(s:line, s:column, 1), 'name') : 'not there'
    if s:group ==# s:expected
      let s:passed += 1
    else
      let s:failed += 1
      call add(s:report, printf('%s: "%s" is %s, not %s', s:name, s:needle, s:group, s:expected))
    endif
  endfor
endfor
call writefile(s:report + [printf('places with the right group: %d of %d', s:passed, s:passed + s:failed)], g:report)
if s:failed || !s:passed | cquit | endif
qall!

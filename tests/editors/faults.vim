" Compares what the syntax file marks as an error with what the engine refuses.
" g:cases names a file of lines [template, refused] in JSON, g:report the
" file to write the outcome to. Each template is highlighted in a line of its
" own.

let s:cases = map(readfile(g:cases), 'json_decode(v:val)')
call setline(1, map(copy(s:cases), 'v:val[0]'))
set filetype=phptemplate
syntax sync fromstart

let s:passed = 0
let s:report = []
for s:line in range(1, line('$'))
  let s:marks = 0
  for s:column in range(1, len(getline(s:line)))
    let s:marks = s:marks || synIDattr(synIDtrans(synID(s:line, s:column, 1)), 'name') ==# 'Error'
  endfor
  let s:refused = s:cases[s:line - 1][1] == v:true
  if s:marks == s:refused
    let s:passed += 1
  else
    call add(s:report, getline(s:line) .. ': the engine ' .. (s:refused ? 'refuses' : 'takes') .. ' it, the syntax file does not')
  endif
endfor
call writefile(s:report[:19] + [printf('tags judged alike by syntax file and engine: %d of %d', s:passed, line('$'))], g:report)
if s:passed == line('$') && s:passed > 0 | qall! | else | cquit | endif

" :make with our compiler fills the list of places; the comment is the language's own.
let s:folder = tempname()
call mkdir(s:folder)
execute 'cd' s:folder
call writefile(['{dynamic rows}', '<b>{name}</b>'], 'page.html.tpl')
edit page.html.tpl
compiler phptemplate
silent make! page.html.tpl
let s:places = map(filter(getqflist(), 'v:val.valid'), '[bufname(v:val.bufnr), v:val.lnum, v:val.col, v:val.type, v:val.text]')
let s:wrong = []
if s:places !=# [['page.html.tpl', 1, 1, 'E', 'Missing closing tag (for {dynamic rows})'],
  \ ['page.html.tpl', 2, 4, 'I', 'printed raw inside HTML: name [raw-html]']]
  call add(s:wrong, string(s:places))
endif
if &l:commentstring !=# '{optional --}%s{/optional}'
  call add(s:wrong, 'The comment is ' .. &l:commentstring)
endif
call writefile(s:wrong, g:report)
execute s:wrong == [] ? 'qall!' : 'cquit!'

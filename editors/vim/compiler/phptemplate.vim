" Vim compiler file: ":compiler phptemplate", then ":make %" lists what "template lint" finds.
" Language: templates of PHP's template() extension

if exists('g:current_compiler')
  finish
endif
let g:current_compiler = 'phptemplate'

CompilerSet makeprg=template\ lint\ --quiet
CompilerSet errorformat=%I%f:%l:%c:\ hint:\ %m,%E%f:%l:%c:\ %m

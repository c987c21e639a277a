" Vim filetype plugin
" Language: templates of PHP's template() extension, HTML around the tags

if exists('b:did_ftplugin')
  finish
endif
runtime! ftplugin/html.vim ftplugin/html_*.vim ftplugin/html/*.vim
let b:did_ftplugin = 1

" % (matchit) jumps between the tags of a section, as between those of HTML.
let s:sections = '{!\=optional:{/optional,{dynamic:{/dynamic,{rdynamic:{/rdynamic'
let b:match_words = exists('b:match_words') ? b:match_words .. ',' .. s:sections : s:sections

" A comment of HTML would hide its tags from the browser, and not from the engine.
setlocal commentstring={optional\ --}%s{/optional}

let b:undo_ftplugin = get(b:, 'undo_ftplugin', 'exe') .. ' | unlet! b:match_words | setlocal commentstring<'

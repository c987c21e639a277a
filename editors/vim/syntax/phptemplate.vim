" Vim syntax file
" Language: templates of PHP's template() extension, HTML around the tags
"
" Tags are looked for everywhere, in attribute values, scripts and comments
" too, because the engine knows nothing of HTML: it looks at every brace.

if exists('b:current_syntax')
  finish
endif
runtime! syntax/html.vim
unlet! b:current_syntax

let s:cpo = &cpo
set cpo&vim
syntax case match

" The bytes, besides the line's end, that are trimmed and that part the words
" of a variable tag.
let s:blanks = ' \t\r\x0b\x0c'

" References: parts joined by '::'. How far one goes depends on the tag, so the
" items are made for each kind of tag from the characters that a reference may
" hold there, what it begins with, and the place where it ends. Of the items
" that match, the one that was defined last wins: what has no valid shape is
" left to the error.
syntax match phptemplateJoint contained "::"
syntax match phptemplateStar contained "\%(\.\=\*\|\[\*\]\)\%(::\|[ \t\r\x0b\x0c{}']\|$\)\@="

function! s:References(kind, char, start, end, options) abort
  let word = '\%(\%(::\)\@!' .. a:char .. '\)\+'
  let part = '\%(\%(\*\|\[\*\]\)\%(::\|' .. a:end .. '\)\)\@!' .. word
  let first = '\%(\%(\.\=\*\|\[\*\]\)\%(::\|' .. a:end .. '\)\)\@!' .. word
  let joint = ':::\@!'
  let path = '\%(' .. joint .. part .. '\)*'
  let section = '\%(' .. first .. joint .. '\)\='
  let shapes = {
    \ 'Error': a:char .. '\+',
    \ 'Path': first .. path,
    \ 'Key': section .. '\[\*\]',
    \ 'Element': '\%(\.\=\*\|' .. first .. joint .. '\*\)' .. path,
    \ }

  let cluster = 'phptemplate' .. a:kind
  execute 'syntax match' cluster .. 'Section contained "' .. first .. '\%(::\%(\*\|\[\*\]\)\)\@="'
  execute 'highlight default link' cluster .. 'Section phptemplateSection'
  for shape in ['Error', 'Path', 'Key', 'Element']
    let group = cluster .. shape
    execute 'syntax match' group 'contained' a:options
      \ shape ==# 'Error' ? '' : 'contains=phptemplateJoint'
      \   .. (shape ==# 'Path' ? '' : ',phptemplateStar,' .. cluster .. 'Section')
      \ '"' .. a:start .. shapes[shape] .. '[^' .. s:blanks .. ']\@1<=\%(' .. a:end .. '\)\@="'
    execute 'syntax cluster' cluster 'add=' .. group
    execute 'highlight default link' group 'phptemplate' .. (shape ==# 'Error' ? 'Error' : 'Name')
  endfor
endfunction

let s:mark = '[^{}' .. s:blanks .. ']\@='
let s:tag_end = '[' .. s:blanks .. ']*\%([{}]\|$\)'
call s:References('Word', '[^{}''' .. s:blanks .. ']', '', '[{}''' .. s:blanks .. ']\|$', '')
call s:References('Whole', '[^{}]', s:mark, s:tag_end, '')
call s:References('Condition', '[^ {}]', s:mark, ' \|' .. s:tag_end,
  \ 'nextgroup=phptemplateComparison,phptemplateQuotedComparison')
" A key is no list. After a section's name a blank belongs to the reference.
call s:References('List', '[^{}]', s:mark, s:tag_end, '')
call s:References('NamedList', '[^{}]', '', s:tag_end, '')
syntax clear phptemplateListKey phptemplateNamedListKey
" A file name depends on no section.
highlight default link phptemplateFilePath String
call s:References('File', '[^{}]', s:mark, s:tag_end, '')
syntax clear phptemplateFileKey phptemplateFileElement

" Keywords, which are prefixes: {optionals} asks for the variable s.
syntax match phptemplateConditional contained "{\@1<=!\=optional"
  \ skipwhite skipempty nextgroup=@phptemplateCondition
syntax match phptemplateLoop contained "{\@1<=r\=dynamic"
  \ skipwhite skipempty nextgroup=@phptemplateList,phptemplateListName,phptemplateComma,phptemplateNoList
syntax match phptemplateInclude contained "{\@1<=include"
  \ skipwhite skipempty nextgroup=@phptemplateFile
syntax match phptemplateEscape contained "{\@1<=\%(addslashes\|htmlentities\|htmlspecialchars\|rawurlencode\)"
  \ skipwhite skipempty nextgroup=@phptemplateWhole
syntax match phptemplateNoArgument contained "{\@1<=\%(include\|r\=dynamic\)}\@="
syntax match phptemplateEnd contained "{\@1<=/\%(optional\|r\=dynamic\)" nextgroup=phptemplateIgnored
syntax match phptemplateIgnored contained "\_[^{}]\+"

" What an optional section compares with: all of it, or from the first quote to
" the last.
syntax match phptemplateComparison contained " \_[^{}]*"
syntax match phptemplateQuotedComparison contained " [^'{}]*'\_[^{}]*'[^'{}]*" contains=phptemplateQuoted
syntax match phptemplateQuoted contained "'\_[^{}]*'"

" The name of a repeated section. Nothing is trimmed around the comma.
syntax match phptemplateListName contained "[^,{} \t\r\x0b\x0c][^,{}]*,\@=" nextgroup=phptemplateComma,phptemplateNoList
syntax match phptemplateComma contained "," nextgroup=@phptemplateNamedList
syntax match phptemplateNoList contained ",\%(\_s*}\)\@="

" Where a word of a variable tag could begin, a quote opens the default, which
" goes to the end of the tag.
syntax match phptemplateQuoteError contained "[^{}' \t\r\x0b\x0c]\+'[^{} \t\r\x0b\x0c]*"
syntax match phptemplateDefaultError contained "'\_[^{}]*"
syntax match phptemplateDefault contained "'\_[^{}]*'\%(\_[ \t\r\x0b\x0c]*}\)\@="

" A brace inside a tag swallows all the rest of the template.
syntax region phptemplateSwallowed contained matchgroup=phptemplateError start="{" end="\%$"

" The tags. A brace before a blank is text, {} is, and doubled ones print one.
syntax cluster phptemplateTag contains=phptemplateTag,phptemplateVariable,phptemplateBrace,phptemplateLiteral
" They are in everything but themselves; scripts and style sheets, which HTML
" includes, have to be named besides.
for s:where in ['ALLBUT,phptemplate.*,@phptemplateTag', 'javaScript.*,css.*']
  execute 'syntax region phptemplateVariable matchgroup=phptemplateDelimiter start="{[^ \t\r{}]\@=" end="}"'
    \ 'contains=@phptemplateWord,phptemplateQuoteError,phptemplateDefault,phptemplateDefaultError,phptemplateSwallowed'
    \ 'containedin=' .. s:where
  execute 'syntax region phptemplateTag matchgroup=phptemplateDelimiter end="}"'
    \ 'start="{\%([!/]\=optional\|/\=r\=dynamic\|include\|addslashes\|htmlentities\|htmlspecialchars\|rawurlencode\)\@="'
    \ 'contains=phptemplateConditional,phptemplateLoop,phptemplateInclude,phptemplateEscape,phptemplateNoArgument,phptemplateEnd,phptemplateSwallowed'
    \ 'containedin=' .. s:where
  execute 'syntax match phptemplateBrace "{{\|}}" containedin=' .. s:where
  execute 'syntax match phptemplateLiteral "{}" containedin=' .. s:where
endfor

highlight default link phptemplateDelimiter PreProc
highlight default link phptemplateConditional Conditional
highlight default link phptemplateLoop Repeat
highlight default link phptemplateInclude Include
highlight default link phptemplateEscape Function
highlight default link phptemplateEnd Statement
highlight default link phptemplateIgnored Comment
highlight default link phptemplateName Identifier
highlight default link phptemplateJoint Delimiter
highlight default link phptemplateStar Special
highlight default link phptemplateSection Type
highlight default link phptemplateListName Type
highlight default link phptemplateComma Delimiter
highlight default link phptemplateComparison String
highlight default link phptemplateQuotedComparison Comment
highlight default link phptemplateQuoted String
highlight default link phptemplateDefault String
highlight default link phptemplateBrace SpecialChar
highlight default link phptemplateSwallowed Comment
highlight default link phptemplateNoArgument phptemplateError
highlight default link phptemplateNoList phptemplateError
highlight default link phptemplateQuoteError phptemplateError
highlight default link phptemplateDefaultError phptemplateError
highlight default link phptemplateError Error

" A tag may go over lines, and a brace reaches to the end: look from the top.
syntax sync fromstart

let b:current_syntax = 'phptemplate'
delfunction s:References
let &cpo = s:cpo
unlet s:cpo s:blanks s:mark s:tag_end s:where

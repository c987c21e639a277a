" Vim itself takes *.tpl for Smarty, so this has to override, not just propose.
autocmd BufNewFile,BufRead *.tpl set filetype=phptemplate

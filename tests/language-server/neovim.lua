-- Neovim, set up as its user does it, opens a page: findings, hover, completion, a definition.
local folder = vim.fn.tempname()
vim.fn.mkdir(folder .. '/.git', 'p')
vim.fn.writefile({ '{"title": "Menu", "dishes": [{"name": "Cod"}]}' }, folder .. '/sample.json')
vim.fn.writefile({ '<p>' }, folder .. '/head.tpl')
vim.fn.writefile({ '{include head.tpl}', '{dynamic dish,dishes}{dish::*::name}', '{htmlspecialchars dish::*::}' }, folder .. '/page.html.tpl')
vim.cmd('filetype plugin on | cd ' .. folder .. ' | edit page.html.tpl')

local function await(what, condition)
  if not vim.wait(20000, condition, 20) then
    print('Neovim waits in vain for ' .. what)
    os.exit(1)
  end
end
local function ask(method, line, character)
  local place = { textDocument = vim.lsp.util.make_text_document_params(), position = { line = line, character = character } }
  return vim.lsp.buf_request_sync(0, 'textDocument/' .. method, place, 5000)[1].result
end

await('the findings', function() return #vim.diagnostic.get(0) == 3 end)
assert(ask('definition', 0, 3).uri == vim.uri_from_fname(folder .. '/head.tpl'))
assert(ask('hover', 1, 25).contents.value:find('"Cod"', 1, true))
assert(ask('completion', 2, 27)[1].label == 'dish::*::name')
vim.api.nvim_buf_set_lines(0, -1, -1, false, { '{/dynamic}' })
await('the findings of the changed text', function() return #vim.diagnostic.get(0) == 2 end)
os.exit(0)

-- Scripts (*.tvl) in Neovim, 0.7 or newer, with nothing but its built-in client: faults while typing, CTRL-X CTRL-O to
-- complete, K to show what a name is, gd to jump to its declaration, and the one layout whenever a script is saved.
--
-- Copy this file to ~/.config/nvim/plugin/. The tool is found on the PATH, or where the init file says:
--     vim.g.tavrel_script = '/opt/jogo/bin/tavrel_script'

local group = vim.api.nvim_create_augroup('tavrelscript', {})
local client

local function attached(_, buffer)
    vim.bo[buffer].omnifunc = 'v:lua.vim.lsp.omnifunc'
    vim.keymap.set('n', 'K', vim.lsp.buf.hover, { buffer = buffer })
    vim.keymap.set('n', 'gd', vim.lsp.buf.definition, { buffer = buffer })
end

-- One server looks after all scripts that are open, so that each sees what is not yet saved of its imports.
local function attach(buffer)
    local config = {
        name = 'tavrelscript',
        cmd = { vim.g.tavrel_script or 'tavrel_script', '--lsp' },
        on_attach = attached,
        on_exit = function() client = nil end,
    }
    if vim.lsp.start then
        local isOurs = function(running) return running.name == config.name end
        vim.lsp.start(config, { bufnr = buffer, reuse_client = isOurs })
        return
    end
    client = client or vim.lsp.start_client(config)
    if client then vim.lsp.buf_attach_client(buffer, client) end
end

local function layOut()
    if vim.lsp.buf.format then
        vim.lsp.buf.format({ name = 'tavrelscript', timeout_ms = 5000 })
    else
        vim.lsp.buf.formatting_seq_sync(nil, 5000)
    end
end

local function on(events, pattern, callback)
    vim.api.nvim_create_autocmd(events, { group = group, pattern = pattern, callback = callback })
end

on({ 'BufRead', 'BufNewFile' }, '*.tvl', function(event) vim.bo[event.buf].filetype = 'tavrelscript' end)
on('FileType', 'tavrelscript', function(event)
    vim.bo[event.buf].commentstring = '// %s'
    vim.bo[event.buf].shiftwidth = 4
    vim.bo[event.buf].expandtab = true
    attach(event.buf)
end)
on('BufWritePre', '*.tvl', layOut)

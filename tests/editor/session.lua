-- A session at the editor, played by keys and commands as a person would give them; what a person would see goes to
-- standard output, line by line. It runs as a coroutine between the editor's own events, so that the editor is never
-- held up. Whatever stays away for `patience` milliseconds ends the session with a line that says so.

local patience = 30000
local session

local function say(...)
    io.stdout:write(string.format(...), '\n')
    io.stdout:flush()
end

local function await(what, ready)
    local deadline = vim.loop.now() + patience
    while not ready() do
        if vim.loop.now() > deadline then error('waited in vain for ' .. what, 0) end
        vim.defer_fn(session, 10)
        coroutine.yield()
    end
end

-- Keys go through the editor's input, behind what is typed already.
local function press(keys)
    vim.api.nvim_input(keys)
end

local function name(buffer)
    return vim.fn.fnamemodify(vim.api.nvim_buf_get_name(buffer), ':t')
end

-- How often the server has reported on each file.
local reports = {}

local function countReports()
    local method = 'textDocument/publishDiagnostics'
    local show = vim.lsp.handlers[method]
    vim.lsp.handlers[method] = function(err, result, ...)
        show(err, result, ...)
        local file = vim.fn.fnamemodify(vim.uri_to_fname(result.uri), ':t')
        reports[file] = (reports[file] or 0) + 1
    end
end

-- The text that a fault underlines; one that ends behind its line ends with the line.
local function underlined(buffer, fault)
    local line = vim.api.nvim_buf_get_lines(buffer, fault.lnum, fault.lnum + 1, false)[1] or ''
    return line:sub(fault.col + 1, fault.end_lnum > fault.lnum and #line or fault.end_col)
end

local function tellFaults(buffer)
    local faults = vim.diagnostic.get(buffer)
    say('  %s has %d fault(s)', name(buffer), #faults)
    for _, fault in ipairs(faults) do
        local severity = vim.diagnostic.severity[fault.severity]
        say('  %d:%d at [%s] %s', fault.lnum + 1, fault.col + 1, underlined(buffer, fault), severity)
        say('    %s', (fault.message:gsub('\n', '\n    ')))
    end
end

-- The server answers in order: once it has answered this question, everything it was told before is on show.
local function settle()
    local answered = false
    local place = vim.lsp.util.make_position_params(0, 'utf-16')
    vim.lsp.buf_request(0, 'textDocument/hover', place, function() answered = true end)
    await('an answer', function() return answered end)
end

-- Gives a command that must lead to a report on `file`, and waits for it.
local function provoke(file, command)
    local before = reports[file] or 0
    vim.cmd(command)
    await('a report on ' .. file, function() return (reports[file] or 0) > before end)
end

-- The same, and then waits for all that follows.
local function reported(file, command)
    provoke(file, command)
    settle()
end

local function show(file)
    vim.cmd('buffer ' .. file)
end

local function seek(pattern)
    if vim.fn.search(pattern, 'cw') == 0 then error('nothing to be found by ' .. pattern, 0) end
end

local function floatingWindow()
    for _, window in ipairs(vim.api.nvim_list_wins()) do
        if vim.api.nvim_win_get_config(window).relative ~= '' then return window end
    end
end

local function hover(pattern)
    seek(pattern)
    press('K')
    await('the text on a name', floatingWindow)
    local window = floatingWindow()
    say('  %s', table.concat(vim.api.nvim_buf_get_lines(vim.api.nvim_win_get_buf(window), 0, -1, false), '\n  '))
    vim.api.nvim_win_close(window, true)
end

local function jump(pattern, file)
    seek(pattern)
    local from = vim.fn.line('.')
    press('gd')
    await('the jump', function() return name(0) == file and vim.fn.line('.') ~= from end)
    settle()
    say('  %s:%d: %s', name(0), vim.fn.line('.'), vim.fn.getline('.'))
end

local function complete()
    say('completion behind "mapa.", then "alt" and the only one left')
    show('torre.tvl')
    seek('^$\\n    aberta')
    press('S    agua = mapa.<C-x><C-o>')
    await('the list of names', function() return vim.fn.pumvisible() == 1 end)
    for _, item in ipairs(vim.fn.complete_info({ 'items' }).items) do
        say('  %s, %s%s', item.word, item.kind, item.menu == '' and '' or ': ' .. item.menu)
    end
    press('alt<C-n><C-y>(1, 2)<Esc>')
    await('the end of the line', function() return vim.api.nvim_get_current_line():find(')', 1, true) end)
    await('normal mode', function() return vim.fn.mode() == 'n' end)
    say('  %s', vim.trim(vim.api.nvim_get_current_line()))
end

-- The bytes on disk, with what tells the systems' line ends apart made visible.
local function tellBytes(file)
    local handle = assert(io.open(file, 'rb'))
    local bytes = handle:read('*a'):gsub('\r', '<CR>'):gsub('\n', '<LF>\n  ')
    handle:close()
    say('  %s', (bytes:gsub('\n  $', '')))
end

local function format(file)
    say('formats %s when it is saved', file)
    reported(file, 'edit ' .. file)
    reported(file, 'write')
    tellBytes(file)
    reported(file, 'write')
    say('  fileformat %s, and %d lines after it was saved once more', vim.bo.fileformat, vim.fn.line('$'))
end

local function close()
    say('closes everything')
    provoke('torto_crlf.tvl', '%bdelete!')
    say('  %d fault(s) left on show', #vim.diagnostic.get())
    vim.lsp.stop_client(vim.lsp.get_active_clients())
    await('the end of the server', function() return vim.tbl_isempty(vim.lsp.get_active_clients()) end)
    say('  the server has ended')
end

local function play()
    say('opens a script')
    reported('torre.tvl', 'edit torre.tvl')
    tellFaults(0)
    say('mends it')
    reported('torre.tvl', '%s/ lugar / "farol" /')
    tellFaults(0)
    say('hovers over a function of the world, one of the script, and one behind an emoji')
    hover('altura(')
    hover('saudacao(quem')
    hover('saudacao("mar')
    complete()
    say('jumps to a declaration of the script, then into an import')
    jump('saudacao("mar', 'torre.tvl')
    jump('alta(agua)', 'regras.tvl')
    say('changes the import without saving it, and saves the script that imports it')
    reported('regras.tvl', '%s/alta(/cheia(/')
    show('torre.tvl')
    reported('torre.tvl', 'write')
    tellFaults(0)
    say('takes the change back, and changes the script that imports it')
    show('regras.tvl')
    reported('regras.tvl', 'undo')
    show('torre.tvl')
    reported('torre.tvl', 'normal! Go// fim')
    tellFaults(0)
    format('torto.tvl')
    format('torto_crlf.tvl')
    say('saves what cannot be read whole as it is')
    reported('torto_crlf.tvl', 'normal! Gox   <-   "🌊')
    reported('torto_crlf.tvl', 'write')
    say('  %s', vim.fn.getline('$'))
    tellFaults(0)
    close()
end

local playing = coroutine.create(play)
session = function()
    local good, fault = coroutine.resume(playing)
    if not good then
        say('FAILED: %s', fault)
        vim.cmd('cquit')
    elseif coroutine.status(playing) == 'dead' then
        vim.cmd('qall!')
    end
end

vim.o.completeopt = 'menuone,noselect'
vim.g.tavrel_script = vim.env.SERVER
vim.notify = function(text) say('NOTICE: %s', text) end
countReports()
vim.schedule(session)

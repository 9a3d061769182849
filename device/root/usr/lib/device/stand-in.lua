-- What the device's scripts in lua share, as stand-in.sh is for the shell.
local stand_in = {}

local state = "/var/run/device"
local journal = "/var/log/journal"

-- A word as a shell reads it back, in one line.
local function quote(word)
    if word:find("\n") then
        local escapes = { ["\\"] = "\\\\", ["'"] = "\\'", ["\n"] = "\\n" }
        return "$'" .. word:gsub("[\\'\n]", escapes) .. "'"
    elseif word == "" or word:find("[^%w_@%%+=:,./-]") then
        return "'" .. word:gsub("'", "'\\''") .. "'"
    end
    return word
end

-- A word for the shell that os.execute starts, which may be any.
local function shell_quote(word)
    return "'" .. word:gsub("'", "'\\''") .. "'"
end

local function exists(path)
    local file = io.open(path)
    return file ~= nil and file:close()
end

-- Appends the script's call to the journal, in one write. Where a test has put another program in
-- the script's place, that one goes on with the call.
function stand_in.record()
    local name = arg[0]:match("[^/]*$")
    local line, command = name, "exec " .. shell_quote(state .. "/replaced/" .. name)
    for _, word in ipairs(arg) do
        line = line .. " " .. quote(word)
        command = command .. " " .. shell_quote(word)
    end
    local file = assert(io.open(journal, "a"))
    file:write(line .. "\n")
    file:close()
    if exists(state .. "/replaced/" .. name) then
        local status = os.execute(command)
        os.exit(status % 256 == 0 and status / 256 or 128 + status % 128)
    end
end

function stand_in.refuse(reason)
    io.stderr:write(arg[0]:match("[^/]*$") .. ": " .. reason .. "\n")
    os.exit(1)
end

return stand_in

-- SPDX-License-Identifier: MIT
-- What the stand-ins written in lua share; they load this file first. The same as stand-in.sh.

state = "/var/run/device"

-- A word as a shell reads it back, in one line.
local function quoted(word)
    if word:find("\n") then
        return "$'" .. word:gsub("\\", "\\\\"):gsub("'", "\\'"):gsub("\n", "\\n") .. "'"
    elseif word == "" or word:find("[^A-Za-z0-9_@%%+=:,./-]") then
        return "'" .. word:gsub("'", "'\\''") .. "'"
    end
    return word
end

-- Appends this call to the journal. Where a test has put another program in the script's place,
-- that one goes on with the call.
function record()
    local name = arg[0]:match("[^/]*$")
    local words = ""
    for i = 1, #arg do
        words = words .. " " .. quoted(arg[i])
    end
    local journal = assert(io.open("/var/log/journal", "a"))
    journal:write(name .. words .. "\n")
    journal:close()
    local replacement = state .. "/replaced/" .. name
    local file = io.open(replacement)
    if file then
        file:close()
        os.exit(math.floor(os.execute(replacement .. words) / 256))
    end
end

function refuse(reason)
    io.stderr:write(arg[0]:match("[^/]*$"), ": ", reason, "\n")
    os.exit(1)
end

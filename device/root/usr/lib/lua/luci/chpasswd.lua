-- SPDX-License-Identifier: MIT
-- Stand-in of the script that sets the administrator's login: chpasswd.lua NAME PASSWORD.
dofile("/usr/lib/device/stand-in.lua")
record()

if #arg ~= 2 or arg[1] == "" then
    refuse("usage: chpasswd.lua NAME PASSWORD")
end
local login = assert(io.open(state .. "/login", "w"))
login:write("name=", arg[1], "\npassword=", arg[2], "\n")
login:close()

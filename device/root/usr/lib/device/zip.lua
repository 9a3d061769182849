-- SPDX-License-Identifier: MIT
-- Packs files into a zip archive: zip.lua ARCHIVE FILE... The deflated data and its checksum are
-- taken out of what gzip makes of a file.

-- A number as so many bytes, lowest first.
local function bytes(number, count)
    local text = ""
    for _ = 1, count do
        text = text .. string.char(number % 256)
        number = math.floor(number / 256)
    end
    return text
end

local function quoted(path)
    return "'" .. path:gsub("'", "'\\''") .. "'"
end

-- What a zip archive says of a file in both of its places, and its data.
local function packed(path)
    local pipe = assert(io.popen("gzip -c < " .. quoted(path)))
    local gzip = pipe:read("*a")
    pipe:close()
    local data = gzip:sub(11, -9) -- behind a header without options
    local checksum, size = gzip:sub(-8, -5), gzip:sub(-4)
    local name = path:gsub("^/", "")
    local midnight = bytes(0, 2) .. bytes(33, 2) -- of 1980-01-01
    local described = bytes(20, 2) .. bytes(0, 2) .. bytes(8, 2) .. midnight .. checksum
        .. bytes(#data, 4) .. size .. bytes(#name, 2) .. bytes(0, 2)
    return described, name, data
end

local archive = assert(io.open(arg[1], "wb"))
local directory, offset = "", 0
for i = 2, #arg do
    local described, name, data = packed(arg[i])
    local entry = "PK\3\4" .. described .. name .. data
    assert(archive:write(entry))
    directory = directory .. "PK\1\2" .. bytes(20, 2) .. described .. bytes(0, 10)
        .. bytes(offset, 4) .. name
    offset = offset + #entry
end
local count = bytes(#arg - 1, 2)
assert(archive:write(directory, "PK\5\6", bytes(0, 4), count, count, bytes(#directory, 4),
    bytes(offset, 4), bytes(0, 2)))
assert(archive:close())

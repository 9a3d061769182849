-- SPDX-License-Identifier: MIT
-- Prints the POSIX text of a time zone, as the C library wants it in TZ and /etc/TZ.
--
--     chtimezone.lua ZONE DST OFFSET START END
--
-- DST 0 gives the zone's standard time alone ("CET-1"). Any other gives it the daylight saving
-- that the other arguments describe, not that of its country: clocks go OFFSET minutes ahead
-- from START to END, each "month,week,weekday,hour,minute" of the time that is shown until then.
dofile("/usr/lib/device/stand-in.lua")

-- The zone's own POSIX text, from lines "Europe/Vienna CET-1CEST,M3.5.0,M10.5.0/3".
local function text_of(zone)
    for line in io.lines("/usr/share/time-zones") do
        local name, text = line:match("^(%S+) (%S+)$")
        if name == zone then
            return text
        end
    end
    refuse('unknown time zone "' .. zone .. '"')
end

-- Cuts a name off the beginning of a text: "CET", or "<+0330>" where it is a number.
local function cut_name(text)
    local name = text:match("^<[^>]*>") or text:match("^%a+")
    return name, text:sub(#(name or "") + 1)
end

-- Cuts an offset off: "-3:30" is -210, in minutes that the zone is behind UTC.
local function cut_offset(text)
    local offset, sign, hours, rest = text:match("^(([+-]?)(%d+))(.*)$")
    if not offset then
        return nil, text
    end
    local minutes = rest:match("^:(%d%d)")
    local behind = tonumber(hours) * 60 + tonumber(minutes or 0)
    return sign == "-" and -behind or behind, minutes and rest:sub(4) or rest
end

-- Standard and summer time of a zone; a zone without summer time has no summer name.
local function parse(text)
    local standard, summer = {}, {}
    standard.name, text = cut_name(text)
    standard.behind, text = cut_offset(text)
    summer.name, text = cut_name(text)
    summer.behind = cut_offset(text) or standard.behind - 60
    if summer.name and summer.behind > standard.behind then
        -- Ireland's standard time is that of its summer.
        return summer, standard
    end
    return standard, summer
end

local function is_number(name)
    return name:sub(1, 1) == "<"
end

-- 90 is "1:30".
local function clock_text(minutes)
    local sign = minutes < 0 and "-" or ""
    local hours, rest = math.floor(math.abs(minutes) / 60), math.abs(minutes) % 60
    return rest == 0 and sign .. hours or string.format("%s%d:%02d", sign, hours, rest)
end

-- A zone 90 minutes ahead of UTC that is named by a number is "<+0130>".
local function number_name(behind)
    local hours, rest = math.floor(math.abs(behind) / 60), math.abs(behind) % 60
    local digits = rest == 0 and string.format("%02d", hours) or string.format("%02d%02d", hours, rest)
    return "<" .. (behind > 0 and "-" or "+") .. digits .. ">"
end

local function summer_name(standard, summer, behind)
    if is_number(standard.name) then
        return number_name(behind)
    elseif summer.name then
        return summer.name
    end
    local name, replaced = standard.name:gsub("ST$", "DT")
    return replaced == 1 and name or name .. "DST"
end

-- "3,5,0,2,0" is "M3.5.0", the last Sunday of March at the usual hour, 2.
local function rule_text(rule)
    local month, week, weekday, hour, minute = rule:match("^(%d+),(%d+),(%d+),(%d+),(%d+)$")
    local limits = {
        { month, 1, 12 }, { week, 1, 5 }, { weekday, 0, 6 }, { hour, 0, 24 }, { minute, 0, 59 },
    }
    for _, limit in ipairs(limits) do
        local number = tonumber(limit[1])
        if not number or number < limit[2] or number > limit[3] then
            refuse('wrong daylight-saving rule "' .. rule .. '"')
        end
    end
    local time = hour * 60 + minute
    return string.format("M%d.%d.%d", month, week, weekday)
        .. (time == 120 and "" or "/" .. clock_text(time))
end

local function with_daylight_saving(standard, summer, offset, first, last)
    if not offset:match("^%d+$") or tonumber(offset) > 720 then
        refuse('wrong offset "' .. offset .. '"')
    end
    local behind = standard.behind - tonumber(offset)
    return summer_name(standard, summer, behind)
        .. (tonumber(offset) == 60 and "" or clock_text(behind))
        .. "," .. rule_text(first) .. "," .. rule_text(last)
end

record()
if #arg ~= 5 then
    refuse("usage: chtimezone.lua ZONE DST OFFSET START END")
end
local zone, dst, offset, first, last = unpack(arg)
local standard, summer = parse(text_of(zone))
local text = standard.name .. clock_text(standard.behind)
if dst ~= "0" then
    text = text .. with_daylight_saving(standard, summer, offset, first, last)
end
print(text)

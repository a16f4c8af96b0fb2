
-- Frames taken apart as the program's trace does it; a test holds the two side by side.

local longest_answer = 512 -- body bytes: 256 words
local most_frames_of_burst = 32

-- The operator of newer Luas would be an error in the older ones.
local bits = bit32 or bit
local xor = bits and bits.bxor or load("return function(a, b) return a ~ b end")()

local function has_bit(number, mask) return number % (2 * mask) >= mask end

local function crc16(bytes, count)
    local crc = 0xFFFF
    for place = 1, count do
        local entry = crc_table[xor(crc % 256, bytes:byte(place)) + 1]
        crc = xor(math.floor(crc / 256), entry)
    end
    return crc
end

local function low_high(bytes, place) return bytes:byte(place + 1) + 256 * bytes:byte(place + 2) end

-- Kinds and registers

-- The command of a code, and whether it is its answer's.
local function kind_of(code)
    if code == nil then return nil, false end
    if commands[code] then return commands[code], false end
    if has_bit(code, answer_mark) and commands[code - answer_mark] then return commands[code - answer_mark], true end
    return nil, false
end

local function is_request(frame) return frame.command ~= nil and not frame.is_answer end

local function kind_in_words(frame)
    if frame.command == nil then return "unknown" end
    return (frame.is_answer and "answer to " or "") .. frame.command.name
end

local function word_name(word)
    for _, kind in ipairs(register_kinds) do
        if word >= kind.base and word <= kind.last then
            return string.format("%s %0" .. kind.digits .. "d", kind.name, word - kind.base)
        end
    end
    return string.format("address %04Xh", word)
end

local function point_name(point)
    if point.access == "word" then return word_name(point.address) end
    return word_name(math.floor(point.address / 16)) .. "." .. point.address % 16
end

local function value_size(access) return access == "word" and 2 or 1 end

local function size_of_values(points)
    local size = 0
    for _, point in ipairs(points) do size = size + value_size(point.access) end
    return size
end

-- A point of a mixed request says in its address what it is.
local function mixed_point(address)
    if has_bit(address, word_mark) then return { access = "word", address = address - word_mark } end
    return { access = "bit", address = address }
end

-- Where a frame ends

local function is_low_byte(length, given) return length % 256 == given end

local function may_be_long(frame)
    return frame.is_answer and frame.command.access ~= nil and not frame.command.writes
end

local function is_checked(bytes, length)
    local checked = header_size + length
    return checked + 2 <= #bytes and crc16(bytes, checked) == low_high(bytes, checked)
end

local function body_wanted(frame)
    if frame.command == nil then return nil end
    if frame.is_answer then
        if frame.command.writes then return acknowledgement_size end
        return frame.asked and size_of_values(frame.asked) or nil
    end
    if frame.command.access and not frame.command.writes then return read_body_size end
    return nil
end

-- Of a frame whose check is right nowhere.
local function guessed_body_length(frame, bytes, given, all)
    local wanted = frame.body_wanted
    if wanted and (all == wanted or is_low_byte(wanted, given)) then return wanted end
    if may_be_long(frame) and all <= longest_answer and is_low_byte(all, given) then return all end
    return given
end

local function find_body_length(frame, bytes)
    local given = bytes:byte(4)
    local all = math.max(#bytes, envelope_size) - envelope_size
    local asked = frame.body_wanted or given
    local first = is_low_byte(asked, given) and asked or given
    for _, length in ipairs({ first, given, given + 256, longest_answer, all }) do
        local fits = length <= 255 or (may_be_long(frame) and is_low_byte(length, given))
        if fits and is_checked(bytes, length) then return length end
    end
    return guessed_body_length(frame, bytes, given, all)
end

-- Fields

local function add(frame, bytes, role, place, whole, limit)
    local stop = math.min(place + whole, limit, #bytes)
    if stop <= place then return nil end
    local field = { role = role, place = place, length = stop - place, whole = whole, number = 0 }
    if whole <= 2 and role ~= "body" and role ~= "behind" then
        field.number = field.length == 2 and low_high(bytes, place) or bytes:byte(place + 1)
    end
    table.insert(frame.fields, field)
    return field
end

local function is_cut(field) return field.length < field.whole end

local function body_end(frame) return header_size + frame.body_length end

local function has_body(frame, bytes) return frame.next < body_end(frame) and frame.next < #bytes end

local function add_to_body(frame, bytes, role, whole)
    local field = add(frame, bytes, role, frame.next, whole, body_end(frame))
    if frame.next < body_end(frame) and frame.next + whole > body_end(frame) then frame.is_uneven = true end
    frame.next = frame.next + whole
    return field
end

local function add_value(frame, bytes, point, access)
    local field = add_to_body(frame, bytes, "value", value_size(access))
    if field then
        field.access, field.point, field.index = access, point, frame.values
        frame.values = frame.values + 1
    end
end

local function add_address(frame, bytes, access)
    local field = add_to_body(frame, bytes, "address", 2)
    if field == nil or is_cut(field) then return { access = access or "bit", address = 0 }, false end
    field.point = access and { access = access, address = field.number } or mixed_point(field.number)
    field.access = field.point.access
    return field.point, true
end

local function add_mixed_body(frame, bytes)
    while has_body(frame, bytes) do
        local point, is_whole = add_address(frame, bytes, nil)
        if frame.command.writes and is_whole then add_value(frame, bytes, point, point.access) end
    end
end

local function add_request_body(frame, bytes)
    local access = frame.command.access
    if access == nil then return add_mixed_body(frame, bytes) end
    local first = add_address(frame, bytes, access)
    if not frame.command.writes then
        local field = add_to_body(frame, bytes, "count", 1)
        if field then field.access = access end
        return
    end
    local address = first.address
    while has_body(frame, bytes) do
        add_value(frame, bytes, { access = access, address = address }, access)
        address = address + 1
    end
end

local function add_answer_body(frame, bytes)
    if frame.command.writes then
        add_to_body(frame, bytes, "acknowledgement", acknowledgement_size)
    elseif frame.asked then
        for _, point in ipairs(frame.asked) do
            if has_body(frame, bytes) then add_value(frame, bytes, point, point.access) end
        end
    elseif frame.command.access then
        while has_body(frame, bytes) do add_value(frame, bytes, nil, frame.command.access) end
    end
end

local function add_body(frame, bytes)
    frame.next, frame.values = header_size, 0
    if is_request(frame) then
        add_request_body(frame, bytes)
    elseif frame.command then
        add_answer_body(frame, bytes)
    end
    if frame.next < body_end(frame) then
        add(frame, bytes, "body", frame.next, body_end(frame) - frame.next, body_end(frame))
    end
end

local function add_tail(frame, bytes)
    add(frame, bytes, "check", body_end(frame), 2, #bytes)
    frame.stop = math.min(body_end(frame) + 2, #bytes)
    if #bytes > frame.stop then add(frame, bytes, "behind", frame.stop, #bytes - frame.stop, #bytes) end
end

-- Faults

local function may_be_followed(frame) return is_request(frame) and frame.command.access == nil end

local function is_wrong_body(frame)
    local lacks_address = is_request(frame) and frame.command.access ~= nil and frame.body_length < 2
    return frame.is_uneven or lacks_address or (frame.body_wanted and frame.body_wanted ~= frame.body_length)
end

local function judge(frame, bytes)
    local faults = {}
    local has_length = #bytes > 3
    local whole = body_end(frame) + 2
    if not has_length or #bytes < whole then
        faults.cut, frame.missing = true, whole - #bytes
    else
        frame.check_right = crc16(bytes, body_end(frame))
        faults.check = low_high(bytes, body_end(frame)) ~= frame.check_right
    end
    faults.length = has_length and not is_low_byte(frame.body_length, bytes:byte(4))
    faults.body = has_length and is_wrong_body(frame)
    faults.command = #bytes > 2 and frame.command == nil
    faults.more = #bytes - frame.stop > (may_be_followed(frame) and 1 or 0)
    frame.faults = faults
end

-- Frames

-- Nothing lays down what code the answer to a mixed request has: its length alone tells it.
local function is_answer_of_another_code(bytes, request)
    if request.command.access ~= nil or #bytes <= 3 then return false end
    local size = request.command.writes and acknowledgement_size or size_of_values(request.points)
    return bytes:byte(4) == size and #bytes == size + envelope_size
end

local function look_at_request(frame, bytes, request)
    if request == nil or is_request(frame) then return end
    if frame.command == nil and is_answer_of_another_code(bytes, request) then
        frame.command, frame.is_answer = request.command, true
    end
    if frame.command == request.command and not frame.command.writes and #request.points > 0 then
        frame.asked = request.points
    end
end

-- Takes the first frame of some bytes apart. request: what it may be the answer to, with its points
local function decode(bytes, request)
    local frame = { fields = {}, is_uneven = false }
    frame.command, frame.is_answer = kind_of(bytes:byte(3))
    look_at_request(frame, bytes, request)
    frame.body_wanted = body_wanted(frame)
    frame.body_length = #bytes > 3 and find_body_length(frame, bytes) or 0
    for place, role in ipairs({ "da", "sa", "cmd", "len" }) do
        add(frame, bytes, role, place - 1, 1, header_size)
    end
    add_body(frame, bytes)
    add_tail(frame, bytes)
    judge(frame, bytes)
    return frame
end

local function find(frame, role)
    for _, field in ipairs(frame.fields) do
        if field.role == role then return field end
    end
    return nil
end

local function is_whole_frame(frame) return not (frame.faults.cut or frame.faults.check or frame.faults.command) end

-- Every bit and word that a request is about.
local function points_of(frame)
    local points = {}
    local count, first = find(frame, "count"), find(frame, "address")
    if count and first and first.point then
        for step = 0, (count.number == 0 and 256 or count.number) - 1 do
            table.insert(points, { access = first.access, address = first.point.address + step })
        end
    elseif frame.command.access == nil then
        for _, field in ipairs(frame.fields) do
            if field.role == "address" and field.point then table.insert(points, field.point) end
        end
    end
    return points
end

local function as_request(frame) return { command = frame.command, points = points_of(frame) } end

local function next_frame(bytes, before, begin, request)
    for skipped = 0, may_be_followed(before) and 1 or 0 do
        local rest = bytes:sub(begin + before.stop + skipped + 1)
        if #rest > 0 then
            local frame = decode(rest, request)
            if is_whole_frame(frame) then return frame, begin + before.stop + skipped end
        end
    end
    return nil
end

-- What belongs to the next frame is no longer what follows this one.
local function end_at(frame, length)
    frame.faults.more = false
    local behind = frame.fields[#frame.fields]
    behind.length, behind.whole = length, length
    if length == 0 then table.remove(frame.fields) end
end

-- All frames of a burst, and the last request among them: a sound frame may be followed by another one, which may be its
-- answer.
local function decode_burst(bytes, request)
    local frames = {}
    local frame, begin = decode(bytes, request), 0
    while frame do
        frame.begin = begin
        table.insert(frames, frame)
        if is_request(frame) then request = as_request(frame) end
        if not is_whole_frame(frame) or #frames == most_frames_of_burst then break end
        local following, place = next_frame(bytes, frame, begin, request)
        if following then end_at(frame, place - begin - frame.stop) end
        frame, begin = following, place
    end
    return frames, request
end

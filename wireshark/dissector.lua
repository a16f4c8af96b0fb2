
-- The dissector. It tells frames apart as the program's trace does, and calls everything by the same words; a test
-- holds the two side by side.

local longest_answer = 512 -- body bytes: 256 words
local most_frames_of_burst = 32

local proto = Proto("varda", "VR-Series PLC host link")

local fields = {
    da = ProtoField.uint8("varda.da", "DA"),
    sa = ProtoField.uint8("varda.sa", "SA"),
    cmd = ProtoField.uint8("varda.cmd", "CMD", base.HEX),
    len = ProtoField.uint8("varda.len", "LEN"),
    address = ProtoField.uint16("varda.address", "Address", base.HEX),
    count = ProtoField.uint8("varda.count", "Count"),
    bit = ProtoField.uint8("varda.bit", "Bit", base.HEX),
    word = ProtoField.uint16("varda.word", "Word"),
    acknowledgement = ProtoField.uint8("varda.acknowledgement", "Acknowledgement", base.HEX),
    check = ProtoField.uint16("varda.check", "CRC", base.HEX),
    body = ProtoField.bytes("varda.body", "Body"),
    behind = ProtoField.bytes("varda.behind", "Behind the frame"),
    cut = ProtoField.bytes("varda.cut", "Cut"),
    kind = ProtoField.string("varda.kind", "Kind"),
    register = ProtoField.string("varda.register", "Register"),
    fault = ProtoField.string("varda.fault", "Fault"),
}
proto.fields = fields

local damaged = ProtoExpert.new("varda.damaged", "The frame has a flaw", expert.group.MALFORMED,
    expert.severity.WARN)
proto.experts = { damaged }

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

-- Words

local function counted(number, what) return number .. " " .. what .. (number == 1 and "" or "s") end

local function both_bases(number, digits) return string.format("%0" .. digits .. "Xh = %d", number, number) end

local function first_byte(field) return string.format("its first byte, %02Xh", field.number) end

local function bit_value(number)
    return number == 0xFF and "ON" or number == 0 and "OFF" or string.format("%02Xh", number)
end

local function value_name(field)
    if field.point then return point_name(field.point) end
    return (field.access == "bit" and "Bit +" or "Word +") .. field.index
end

local function value_in_words(field)
    if field.access == "bit" then return bit_value(field.number) end
    return is_cut(field) and first_byte(field) or both_bases(field.number, 4)
end

local function check_in_words(frame, field)
    if is_cut(field) then return first_byte(field) end
    if frame.faults.check then
        return string.format("%04Xh; of the bytes before it, it is %04Xh", field.number, frame.check_right)
    end
    return string.format("%04Xh, right", field.number)
end

local words = {
    da = function(_, field) return "DA: station " .. field.number end,
    sa = function(_, field) return "SA: station " .. field.number end,
    cmd = function(frame, field)
        local kind = frame.command and kind_in_words(frame) or "no command of this protocol"
        return string.format("CMD %02Xh: ", field.number) .. kind
    end,
    len = function(_, field) return "LEN " .. both_bases(field.number, 2) end,
    address = function(_, field)
        if not field.point then return "Address " .. first_byte(field) end
        return string.format("Address %04Xh: ", field.number) .. point_name(field.point)
    end,
    count = function(_, field)
        local count = field.number == 0 and 256 or field.number
        return string.format("Count %02Xh: ", field.number) .. counted(count, field.access)
    end,
    value = function(_, field) return value_name(field) .. " = " .. value_in_words(field) end,
    acknowledgement = function(_, field)
        return string.format("Acknowledgement: %02Xh", field.number) .. (field.number == 0 and ", written" or "")
    end,
    check = function(frame, field) return "CRC " .. check_in_words(frame, field) end,
    body = function(_, field) return "Body: " .. counted(field.length, "byte") end,
    behind = function(_, field) return "Behind the frame: " .. counted(field.length, "byte") end,
}

local function wrong_body(frame)
    local has = "The body has " .. counted(frame.body_length, "byte")
    if frame.body_wanted and frame.body_wanted ~= frame.body_length then
        local what = frame.asked and "what was asked." or "this kind."
        return has .. "; " .. frame.body_wanted .. " belong to " .. what
    end
    return has .. ", which is no whole number of values."
end

local function faults_in_words(frame)
    local all = {}
    local function note(is_there, sentence) if is_there then table.insert(all, sentence()) end end
    note(frame.faults.cut, function()
        return "The frame is cut: " .. counted(frame.missing, "byte") ..
            (frame.missing == 1 and " is missing." or " are missing.")
    end)
    note(frame.faults.length, function()
        return "LEN says " .. find(frame, "len").number .. ", the body has " .. counted(frame.body_length, "byte") .. "."
    end)
    note(frame.faults.body, function() return wrong_body(frame) end)
    note(frame.faults.check, function()
        return string.format("The check is %04Xh; of the bytes before it, it is %04Xh.", find(frame, "check").number,
            frame.check_right)
    end)
    note(frame.faults.command, function()
        return string.format("%02Xh is no command of this protocol.", find(frame, "cmd").number)
    end)
    note(frame.faults.more, function()
        return counted(find(frame, "behind").length, "byte") .. " more than the frame has."
    end)
    return all
end

-- The tree

local function field_of(field)
    if is_cut(field) then return fields.cut end
    if field.role == "value" then return field.access == "word" and fields.word or fields.bit end
    return fields[field.role]
end

local function show_field(tree, tvb, frame, field)
    local item = tree:add_le(field_of(field), tvb:range(frame.begin + field.place, field.length))
    item:set_text(words[field.role](frame, field))
    if field.point then
        item:add(fields.register, tvb:range(frame.begin + field.place, field.length), point_name(field.point))
            :set_generated(true)
    end
end

local function show_frame(root, tvb, frame)
    local last = frame.fields[#frame.fields]
    local tree = root:add(proto, tvb:range(frame.begin, last.place + last.length))
    tree:append_text(", " .. kind_in_words(frame))
    tree:add(fields.kind, kind_in_words(frame)):set_generated(true)
    for _, field in ipairs(frame.fields) do show_field(tree, tvb, frame, field) end
    for _, sentence in ipairs(faults_in_words(frame)) do
        tree:add(fields.fault, sentence):set_generated(true)
        tree:add_proto_expert_info(damaged, sentence)
    end
end

local function show_columns(pinfo, frames)
    local kinds = {}
    for _, frame in ipairs(frames) do table.insert(kinds, kind_in_words(frame)) end
    local first = frames[1]
    pinfo.cols.protocol = "VR host link"
    pinfo.cols.info = table.concat(kinds, ", ")
    if is_whole_frame(first) then
        pinfo.cols.src = "station " .. find(first, "sa").number
        pinfo.cols.dst = "station " .. find(first, "da").number
    end
end

-- An answer has the registers of the request before it: what that was is noted while the packets come by in their order.
local last_request = nil
local request_before = {}

function proto.init()
    last_request = nil
    request_before = {}
end

function proto.dissector(tvb, pinfo, root)
    if tvb:captured_len() == 0 then return 0 end
    if not pinfo.visited then request_before[pinfo.number] = last_request end
    local frames, request = decode_burst(tvb:raw(), request_before[pinfo.number])
    if not pinfo.visited then last_request = request end
    show_columns(pinfo, frames)
    for _, frame in ipairs(frames) do show_frame(root, tvb, frame) end
    return tvb:captured_len()
end

DissectorTable.get("wtap_encap"):add(wtap.USER0, proto)

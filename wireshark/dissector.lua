
-- What Wireshark shows of them, in the words of the program.

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

-- Frames of the Cnet link, from bytes to parts: what cnet.lua shows. It needs nothing of Wireshark.
--
-- It knows the frames by itself and shares nothing with `cnet-panel decode`, so that each of the two finds
-- what is wrong in the other.

local ENQ, ACK, NAK, ETX, EOT = "\5", "\6", "\21", "\3", "\4"
local LONGEST_PIECE = 1024 -- what has no end is shown in pieces of so many bytes
local LONGEST_FRAME = 256
local HIGHEST_STATION = 31
local MOST_BLOCKS, MOST_WORDS, LONGEST_NAME = 16, 60, 16
local MOST_DIGITS = 7 -- no PLC has a word number of more

-- What a controller says when it refuses a request.
local REFUSALS = {
  [0x0003] = "more than 16 blocks",
  [0x0004] = "name longer than 16 characters",
  [0x0007] = "data type of the name not supported",
  [0x0011] = "malformed data or name",
  [0x1132] = "no such device, or address outside the device",
  [0x1232] = "more than 60 words in one request",
  [0x1234] = "more characters in the frame than the request needs",
  [0x1332] = "data types of one request differ",
  [0x1432] = "data that are not hexadecimal",
}

-- Where several verdicts hold, the first in this order counts.
local ORDER = { ["no frame"] = 1, malformed = 2, cut = 3, ["wrong check"] = 4, mismatch = 5, good = 6 }

local function judge(frame, verdict, at, text)
  if ORDER[verdict] < ORDER[frame.verdict] then
    frame.verdict, frame.fault, frame.fault_at = verdict, text, at
  end
end

-- Nothing behind the first fault of the text can be told.
local function fail(frame, at, text)
  judge(frame, "malformed", at, text)
  frame.fine = false
end

local function add_part(frame, field, at, length, value, text)
  local part = { field = field, at = at, length = length, value = value, text = text }
  frame.parts[#frame.parts + 1] = part
  return part
end

-- Takes characters of the text. Offsets count from 0, as in Wireshark.
local function take(frame, field, count, name)
  local at = frame.at
  local taken = math.min(count, frame.stop - at)
  frame.at = at + taken
  local value = frame.raw:sub(at + 1, at + taken)
  if taken < count then
    add_part(frame, "rest", at, taken)
    fail(frame, frame.at, taken == 0 and "the " .. name .. " is missing"
      or string.format("the %s has %d of %d characters", name, taken, count))
    return nil, value
  end
  return add_part(frame, field, at, count, value), value
end

local function take_number(frame, field, digits, name)
  local part, text = take(frame, field, digits, name)
  if not part then
    return nil
  end
  local wrong = text:find("%X")
  if wrong then
    part.field = "rest"
    fail(frame, part.at + wrong - 1, "the " .. name .. " is not hexadecimal")
    return nil
  end
  part.value = tonumber(text, 16)
  return part.value, part
end

local function address_text(range, index)
  local address = range.address + index
  if range.word_bit then
    return range.register .. ":" .. math.floor(address / 16) .. "." .. address % 16
  end
  return range.register .. ":" .. address
end

local function range_text(range)
  local what = range.register and address_text(range, 0) or (range.bit and "bits" or "words")
  return range.count == 1 and range.register and what or what .. "*" .. range.count
end

local function take_value(frame, range)
  local value, part = take_number(frame, "value", range.bit and 2 or 4, "value")
  if not value then
    return false
  end
  if range.bit and value > 1 then
    fail(frame, part.at, "a bit is 00 or 01")
    return false
  end
  range.values[#range.values + 1] = value
  part.value_of, part.index = range, #range.values - 1
  return true
end

-- "%DW00100", "%MX0001A", "%TX012". @return range, or nil, offset and fault
local function read_name(name)
  if name:sub(1, 1) ~= "%" then
    return nil, 0, "a name begins with %"
  end
  local device = name:match("^.([PMKLFTCD])")
  if not device then
    return nil, 1, "the devices are P, M, K, L, F, T, C and D"
  end
  local kind = name:match("^..([XxWw])")
  local bit = kind == "X" or kind == "x"
  if not kind or (bit and device == "D") then
    return nil, 2, kind and "the data registers have no bits" or "expected X for a bit or W for a word"
  end
  if #name == 3 then
    return nil, 3, "the address is missing"
  end
  local contact = bit and (device == "T" or device == "C")
  local word_bit = bit and not contact
  local significant, address = 0, 0
  for i = 4, #name do
    local radix = word_bit and i == #name and 16 or 10
    local digit = name:sub(i, i):match(radix == 16 and "%x" or "%d")
    if not digit then
      return nil, i - 1, "expected a digit of the address"
    end
    digit = tonumber(digit, 16)
    significant = (significant > 0 or digit > 0) and significant + 1 or 0
    if significant > MOST_DIGITS then
      return nil, i - 1, "no PLC has so high an address"
    end
    address = address * radix + digit
  end
  local register = device .. (contact and "X" or bit and "_bit" or "_W")
  return { register = register, address = address, word_bit = word_bit, bit = bit, count = 1, values = {} }
end

local function take_name(frame)
  local length, length_part = take_number(frame, "name_length", 2, "name length")
  if not length then
    return nil
  end
  if length == 0 or length > LONGEST_NAME then
    fail(frame, length_part.at, "a name has 1 to 16 characters")
    return nil
  end
  local part, name = take(frame, "name", length, "name")
  if not part then
    return nil
  end
  local range, wrong, why = read_name(name)
  if not range then
    fail(frame, part.at + wrong, why)
    return nil
  end
  part.range = range
  return range, part
end

local function take_values(frame, range, count)
  for _ = 1, count do
    if not take_value(frame, range) then
      return false
    end
  end
  return true
end

local function take_single_names(frame)
  local blocks, part = take_number(frame, "blocks", 2, "number of blocks")
  if not blocks then
    return
  end
  if blocks == 0 or blocks > MOST_BLOCKS then
    return fail(frame, part.at, "a request has 1 to 16 blocks")
  end
  for i = 1, blocks do
    local range, name = take_name(frame)
    if not range then
      return
    end
    if i > 1 and range.bit ~= frame.ranges[1].bit then
      return fail(frame, name.at, "bits and words in one request")
    end
    name.counted = true
    if frame.writes and not take_value(frame, range) then
      return
    end
    frame.ranges[i] = range
  end
end

local function take_block(frame)
  local range, name = take_name(frame)
  if not range then
    return
  end
  if range.bit then
    return fail(frame, name.at + 2, "a block is made of words")
  end
  local words, part = take_number(frame, "count", 2, "number of words")
  if not words then
    return
  end
  if words == 0 or words > MOST_WORDS then
    return fail(frame, part.at, "a request is for 1 to 60 words")
  end
  range.count = words
  if not frame.writes or take_values(frame, range, words) then
    frame.ranges[1] = range
  end
end

-- Number of bytes, and so many. Without its request, one byte is a bit.
local function take_data(frame, request, index)
  local bytes, part = take_number(frame, "bytes", 2, "number of bytes")
  if not bytes then
    return false
  end
  local asked = request and request.ranges[index]
  local range = { bit = bytes == 1, values = {} }
  if asked then
    range.register, range.address, range.word_bit = asked.register, asked.address, asked.word_bit
    range.bit = asked.bit
  end
  local values = range.bit and bytes or bytes / 2
  if bytes == 0 or values ~= math.floor(values) or (frame.single and not request and values ~= 1) then
    fail(frame, part.at, frame.single and "a block has 1 byte for a bit or 2 for a word"
      or "data are words of 2 bytes, at least one")
    return false
  end
  range.count = math.floor(values)
  if asked and asked.count ~= values then
    judge(frame, "mismatch", part.at, string.format("the request was for %d, this has %d", asked.count, values))
  end
  part.range, part.counted = range, true
  if not take_values(frame, range, values) then
    return false
  end
  frame.ranges[#frame.ranges + 1] = range
  return true
end

-- K80S and K120S begin the data of an answer with the number of blocks; the larger CPUs leave it out for SB.
local function has_blocks(frame)
  local digits = frame.raw:match("^%x%x", frame.at + 1)
  return frame.single or not digits or frame.stop - frame.at ~= 2 + 2 * tonumber(digits, 16)
end

local function take_answer(frame, request)
  local blocks = 1
  if has_blocks(frame) then
    local part
    blocks, part = take_number(frame, "blocks", 2, "number of blocks")
    if not blocks then
      return
    end
    if blocks == 0 or (blocks ~= 1 and not frame.single) then
      return fail(frame, part.at, blocks == 0 and "no blocks" or "the answer to SB has one block")
    end
    if request and #request.ranges > 0 and #request.ranges ~= blocks then
      judge(frame, "mismatch", part.at,
        string.format("the request was for %d blocks, this has %d", #request.ranges, blocks))
    end
  end
  for i = 1, blocks do
    if not take_data(frame, request, i) then
      return
    end
  end
end

local function take_body(frame, request)
  if frame.head == ENQ then
    (frame.single and take_single_names or take_block)(frame)
  elseif frame.head == NAK then
    frame.error = take_number(frame, "error", 4, "error code")
  elseif not frame.writes then
    take_answer(frame, request)
  end
  if frame.fine and frame.at < frame.stop then
    fail(frame, frame.at, "more characters than are needed")
  end
end

-- Station, command and type, with which each frame begins. @return true where they are right
local function take_addressee(frame)
  local station, part = take_number(frame, "station", 2, "station")
  frame.station = station
  if not station then
    return false
  end
  if station > HIGHEST_STATION then
    fail(frame, part.at, "the stations are 0 to 31")
    return false
  end
  local command_part, command = take(frame, "command", 1, "command")
  if not command_part then
    return false
  end
  if not command:find("[rRwW]") then
    command_part.field = "rest"
    fail(frame, command_part.at, "the commands are r and w, R and W")
    return false
  end
  local type_part, kind = take(frame, "type", 2, "type")
  if not type_part then
    return false
  end
  if kind ~= "SS" and kind ~= "SB" then
    type_part.field = "rest"
    fail(frame, type_part.at + (kind:sub(1, 1) == "S" and 1 or 0), "the types are SS and SB")
    return false
  end
  local reads = command == "r" or command == "R"
  command_part.text = string.format("Command: %s, %s, %s block check", command, reads and "read" or "write",
    command:find("[a-z]") and "with" or "without")
  type_part.text = "Type: " .. kind .. (kind == "SS" and ", single names" or ", a block of words")
  frame.command, frame.writes, frame.single = command .. kind, not reads, kind == "SS"
  return true
end

local function compare(frame, request)
  if request.station ~= frame.station then
    frame.other_station = true
    judge(frame, "mismatch", 1, string.format("the request was for station %d", request.station))
  elseif request.command ~= frame.command then
    judge(frame, "mismatch", 3, "the request was " .. request.command)
  else
    return request
  end
end

local function take_check(frame, tail)
  local raw = frame.raw
  local at = tail + 1
  local checked = raw:find("^[a-z]", 4) ~= nil
  if checked then
    local sum = 0
    for i = 1, tail + 1, 4 do
      local a, b, c, d = raw:byte(i, math.min(i + 3, tail + 1))
      sum = sum + a + (b or 0) + (c or 0) + (d or 0)
    end
    local found, expected = raw:sub(at + 1, at + 2), string.format("%02X", sum % 256)
    frame.check, frame.expected = found, expected
    add_part(frame, "bcc", at, #found, found)
    if found ~= expected then
      local first = found:sub(1, 1) == expected:sub(1, 1)
      judge(frame, #found < 2 and "cut" or "wrong check", at + (first and 1 or 0), "expected " .. expected)
      frame.cut = #found < 2
      frame.bad_check = not frame.cut
    end
    at = at + #found
  end
  if at < #raw then
    add_part(frame, "rest", at, #raw - at)
    judge(frame, "malformed", at, "the frame ends before this")
  end
end

local function take_tail(frame)
  local at, tail = frame.stop, frame.head == ENQ and EOT or ETX
  if at == #frame.raw then
    frame.cut = true
    judge(frame, "cut", at, (tail == EOT and "EOT" or "ETX") .. " is missing")
  elseif frame.raw:sub(at + 1, at + 1) == tail then
    add_part(frame, "tail", at, 1, tail:byte())
    take_check(frame, at)
  else
    add_part(frame, "rest", at, #frame.raw - at)
    judge(frame, "malformed", at, "expected " .. (tail == EOT and "EOT" or "ETX"))
  end
end

-- @param request_for function(frame) that knows the request of an answer, by its station and command
local function decode(raw, request_for)
  local head = raw:sub(1, 1)
  local frame = { raw = raw, head = head, parts = {}, ranges = {}, verdict = "good", fine = true, at = 1,
    asks = head == ENQ }
  if not head:find("[\5\6\21]") then
    judge(frame, "no frame", 0, "a frame begins with ENQ, ACK or NAK")
    frame.head = nil
    add_part(frame, "noise", 0, #raw)
    return frame
  end
  add_part(frame, "head", 0, 1, raw:byte(1))
  frame.stop = (raw:find("[^ -~]", 2) or #raw + 1) - 1
  if take_addressee(frame) then
    local request = head ~= ENQ and request_for(frame) or nil
    take_body(frame, request and compare(frame, request))
  end
  if frame.at < frame.stop then
    add_part(frame, "rest", frame.at, frame.stop - frame.at)
  end
  take_tail(frame)
  if #raw > LONGEST_FRAME then
    judge(frame, "malformed", LONGEST_FRAME, "a frame has at most 256 bytes")
  end
  return frame
end

-- Cuts bytes where a frame ends, or another begins. @return where it ends, and whether more may belong to it
local function cut(raw, from)
  local most = math.min(#raw, from + LONGEST_PIECE - 1)
  local head = raw:sub(from, from)
  local open = #raw < from + LONGEST_PIECE - 1
  if not head:find("[\5\6\21]") then
    local next_head = raw:find("[\5\6\21]", from)
    return math.min(most, (next_head or most + 1) - 1), false
  end
  local tail = head == ENQ and EOT or ETX
  local at = from
  repeat
    at = raw:find("[\3-\6\21]", at + 1)
    if not at or at > most then
      return most, open
    end
    if raw:find("^[\5\6\21]", at) then
      return at - 1, false
    end
  until raw:sub(at, at) == tail
  if at < from + 3 or not raw:find("^[a-z]", from + 3) then
    return at, false
  end
  local next_head = raw:find("[\5\6\21]", at + 1)
  local last = math.min(at + 2, most, (next_head or most + 1) - 1)
  return last, open and last < at + 2 and not next_head
end

local function summary(frame)
  if not frame.head then
    return "noise"
  end
  local texts = {}
  for i = 1, math.min(#frame.ranges, 4) do
    local range = frame.ranges[i]
    local values = table.concat(range.values, " ", 1, math.min(#range.values, 8))
    texts[i] = range_text(range) .. (#values > 0 and " = " .. values or "") .. (#range.values > 8 and " ..." or "")
  end
  local ranges = table.concat(texts, "; ") .. (#frame.ranges > 4 and "; ..." or "")
  local station = frame.station and "station " .. frame.station or "no station"
  local said = ""
  if frame.head == ENQ then
    said = frame.command and ((frame.writes and ", write " or ", read ") .. ranges) or ", request"
  elseif frame.head == NAK then
    said = ", refused" .. (frame.error and string.format(" %04X", frame.error) or "")
  elseif frame.command then
    said = frame.writes and ", done" or ", " .. ranges
  end
  return station .. said .. (frame.verdict ~= "good" and " [" .. frame.verdict .. "]" or "")
end

return { decode = decode, cut = cut, summary = summary, address_text = address_text, refusals = REFUSALS }

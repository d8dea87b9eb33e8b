-- Cnet, the computer link of MASTER-K controllers, in Wireshark and tshark.
--
-- Takes the frames of captures apart: those of cnet-panel and cnet-plc (link type 252, without any setting, and
-- 250, with Decode As), and TCP streams. Joins requests and answers, and marks what goes wrong.
-- doc/captures.md describes its use.
--
-- Works with Lua 5.2 to 5.4. cnet_frame.lua, beside it, has what knows nothing of Wireshark.

local cnet = Proto("cnet", "MASTER-K Cnet")

local here = __DIR__ or ""
if here ~= "" and not here:find("[/\\]$") then
  here = here .. "/"
end
local frames = dofile(here .. "cnet_frame.lua")

local HEADS = { [5] = "ENQ, a request", [6] = "ACK, a positive answer", [21] = "NAK, a refusal" }
local TAILS = { [3] = "ETX, the end of an answer", [4] = "EOT, the end of a request" }
-- Fields ------------------------------------------------------------------------------------------------------

local F = {
  head = ProtoField.uint8("cnet.head", "Head", base.HEX, HEADS),
  station = ProtoField.uint8("cnet.station", "Station"),
  command = ProtoField.string("cnet.command", "Command"),
  type = ProtoField.string("cnet.type", "Type"),
  blocks = ProtoField.uint8("cnet.blocks", "Blocks"),
  name_length = ProtoField.uint8("cnet.name_length", "Name length"),
  name = ProtoField.string("cnet.name", "Name"),
  address = ProtoField.string("cnet.address", "Address"),
  count = ProtoField.uint8("cnet.count", "Count"),
  bytes = ProtoField.uint8("cnet.bytes", "Bytes of data"),
  value = ProtoField.uint16("cnet.value", "Value"),
  value_address = ProtoField.string("cnet.value.address", "Address of the value"),
  error = ProtoField.uint16("cnet.error", "Error code", base.HEX, frames.refusals),
  tail = ProtoField.uint8("cnet.tail", "Tail", base.HEX, TAILS),
  bcc = ProtoField.string("cnet.bcc", "Block check"),
  bcc_expected = ProtoField.string("cnet.bcc.expected", "Expected block check"),
  bcc_status = ProtoField.uint8("cnet.bcc.status", "Block check status", base.DEC, { [0] = "Bad", [1] = "Good" }),
  rest = ProtoField.bytes("cnet.rest", "Not read"),
  noise = ProtoField.bytes("cnet.noise", "Bytes outside frames"),
  verdict = ProtoField.string("cnet.verdict", "Verdict"),
  fault = ProtoField.string("cnet.fault", "Fault"),
  fault_offset = ProtoField.uint16("cnet.fault.offset", "Offset of the fault"),
  request_in = ProtoField.framenum("cnet.request_in", "Request in", base.NONE, frametype.REQUEST),
  answer_in = ProtoField.framenum("cnet.answer_in", "Answer in", base.NONE, frametype.RESPONSE),
  time = ProtoField.relative_time("cnet.time", "Response time"),
  repeats = ProtoField.framenum("cnet.repeats", "Repeats the request in", base.NONE),
  unanswered = ProtoField.framenum("cnet.unanswered", "Request without an answer", base.NONE),
  echo_of = ProtoField.framenum("cnet.echo_of", "Echo of the request in", base.NONE),
}
cnet.fields = F

local function expert_info(name, text, group, severity)
  return ProtoExpert.new("cnet." .. name, text, expert.group[group], expert.severity[severity])
end

local E = {
  bad_check = expert_info("bad_check", "Wrong block check", "CHECKSUM", "ERROR"),
  malformed = expert_info("malformed", "Malformed frame", "MALFORMED", "ERROR"),
  cut = expert_info("cut", "Truncated frame", "MALFORMED", "ERROR"),
  refused = expert_info("refused", "Request refused", "RESPONSE_CODE", "WARN"),
  no_answer = expert_info("no_answer", "No answer to a request", "SEQUENCE", "WARN"),
  other_station = expert_info("other_station", "Answer of another station", "PROTOCOL", "WARN"),
  mismatch = expert_info("mismatch", "Answer to something else", "PROTOCOL", "WARN"),
  repeated = expert_info("repeated", "Repeated request", "SEQUENCE", "NOTE"),
  unasked = expert_info("unasked", "Answer without a request", "SEQUENCE", "NOTE"),
  echo = expert_info("echo", "Echo of a request", "SEQUENCE", "NOTE"),
  noise = expert_info("outside", "Bytes outside frames", "UNDECODED", "NOTE"),
  not_captured = expert_info("not_captured", "Frame not captured as a whole", "UNDECODED", "NOTE"),
}
cnet.experts = E

cnet.prefs.tcp_ports = Pref.range("TCP ports", "8000", "Ports of serial servers and of cnet-plc. Streams at other "
  .. "ports are found by what they look like.", 65535)

-- Lines: what belongs together --------------------------------------------------------------------

-- What is known of the lines, and what was found out about each frame when it was seen first, in its
-- order. Which interface a packet is of stands in the tree, and not every first pass has one. Until it
-- is known, all interfaces are taken for one line, in a book of its own.
local known, guessed
local previous -- of each packet the one before it
local newest
local taken -- packets of streams that were taken for Cnet

function cnet.init()
  known = { lines = {}, notes = {}, last = 0 }
  guessed = { lines = {}, notes = {} }
  previous = {}
  newest = 0
  taken = {}
end

local interface_field = Field.new("frame.interface_id")
local event_field = Field.new("rtacser.eventtype")
Listener.new("frame", "frame") -- so that Wireshark builds a tree when it loads a file

local TCP = 2

local function last_of(field)
  local all = { field() }
  return #all > 0 and all[#all].value or nil
end

-- @return book and whether it may be added to: packet by packet, in their order
local function book_of(pinfo, has_line)
  local number = pinfo.number
  if not pinfo.visited and number ~= newest then
    previous[number], newest = newest, number
  end
  if has_line and previous[number] == known.last then
    known.last = number
  end
  if number <= known.last then
    return known, number == known.last
  end
  return guessed, not pinfo.visited
end

local function line_of(pinfo)
  local key
  if pinfo.port_type == TCP then
    local one, other = pinfo.src_port .. " " .. tostring(pinfo.src), pinfo.dst_port .. " " .. tostring(pinfo.dst)
    key = one < other and one .. " " .. other or other .. " " .. one
  else
    key = last_of(interface_field)
  end
  local book, learns = book_of(pinfo, key ~= nil)
  key = key or "all"
  book.lines[key] = book.lines[key] or { open = {} }
  return book.lines[key], book, learns
end

-- Requests and answers of a line go different ways; an echo goes the way of the answers. nil: not known
local function way_of(pinfo)
  if pinfo.port_type == TCP then
    return tostring(pinfo.src) .. " " .. pinfo.src_port
  end
  if pinfo.p2p_dir == 0 or pinfo.p2p_dir == 1 then
    return pinfo.p2p_dir
  end
  local event = last_of(event_field)
  return event and event % 2
end

local function is_echo(request, frame, way)
  return request and not request.heard and request.raw == frame.raw and request.way ~= way and request.way and way
end

local function note_request(line, note, frame, way, pinfo)
  local before = line.latest
  if is_echo(before, frame, way) then
    note.echo_of = before.number
    return
  end
  if before then
    note.unanswered = not before.heard and before.number or nil
    note.repeats = not before.settled and before.raw == frame.raw and before.number or nil
  end
  note.is = { number = pinfo.number, time = pinfo.rel_ts, way = way, raw = frame.raw, station = frame.station,
    command = frame.command, ranges = frame.ranges }
  line.latest = note.is
  local good = frame.verdict == "good"
  line.open[frame.station] = good and note.is or nil
  line.asked = good and frame.station or nil
end

-- An answer belongs to the open request of its station, else to the latest of all.
local function request_of(line, frame)
  return line.open[frame.station] or line.open[line.asked or -1]
end

local function note_answer(line, note, frame, pinfo)
  local request = note.request
  if not request or frame.verdict == "mismatch" or request.station ~= frame.station then
    return
  end
  line.open[request.station] = nil
  if line.asked == request.station then
    line.asked = nil
  end
  note.belongs = true
  request.answer = pinfo.number
  request.settled = frame.verdict == "good"
end

-- Decodes a frame. What is known of its line changes only when it is seen for the first time.
local function understand(raw, key, place, pinfo, whole)
  local line, book = place.line, place.book
  local note = book.notes[key]
  if note then
    return frames.decode(raw, function() return note.request end), note
  end
  note = {}
  local frame = frames.decode(raw, function(answer)
    note.request = request_of(line, answer)
    return note.request
  end)
  if not place.learns then
    return frame, note
  end
  book.notes[key] = note
  if frame.head and not frame.asks and line.latest then
    line.latest.heard = true
    note.unasked = frame.command and not note.request
  end
  if frame.command and whole then
    if frame.asks then
      note_request(line, note, frame, place.way, pinfo)
    else
      note_answer(line, note, frame, pinfo)
    end
  end
  return frame, note
end

-- The tree ----------------------------------------------------------------------------------------------------

local function add_generated(tree, field, value, text)
  local item = text and tree:add(field, value):set_text(text) or tree:add(field, value)
  item:set_generated()
  return item
end

local function add_range(tree, part)
  if part.range.register then
    add_generated(tree, F.address, frames.address_text(part.range, 0))
  end
  if part.counted then
    add_generated(tree, F.count, part.range.count)
  end
end

local function add_check(tree, frame)
  if #frame.check == 2 then
    add_generated(tree, F.bcc_status, frame.bad_check and 0 or 1)
  end
  if frame.check ~= frame.expected then
    add_generated(tree, F.bcc_expected, frame.expected)
  end
end

-- "D_W:101 = 255 0x00FF"
local function add_value(tree, part, bytes)
  local range, value = part.value_of, part.value
  local text = range.bit and value or string.format("%d 0x%04X", value, value)
  local item = tree:add(F.value, bytes, value)
  if range.register then
    local address = frames.address_text(range, part.index)
    item:set_text(address .. " = " .. text)
    add_generated(item, F.value_address, address)
  else
    item:set_text("Value: " .. text)
  end
end

local function add_part(tree, part, bytes)
  local item = part.value ~= nil and tree:add(F[part.field], bytes, part.value) or tree:add(F[part.field], bytes)
  if part.text then
    item:set_text(part.text)
  end
  if part.range then
    add_range(tree, part)
  end
end

local function add_parts(tree, frame, tvb, from)
  for _, part in ipairs(frame.parts) do
    if part.value_of then
      add_value(tree, part, tvb(from + part.at, part.length))
    elseif part.length > 0 then
      add_part(tree, part, tvb(from + part.at, part.length))
    end
  end
  if frame.expected then
    add_check(tree, frame)
  end
end

local LINKS = {
  { field = "unanswered", expert = E.no_answer },
  { field = "repeats", expert = E.repeated },
  { field = "echo_of", expert = E.echo },
}

local function add_links(tree, note, frame, pinfo)
  if note.is and note.is.answer and pinfo.visited then
    add_generated(tree, F.answer_in, note.is.answer)
  end
  if note.belongs then
    add_generated(tree, F.request_in, note.request.number)
    local time = pinfo.rel_ts - note.request.time
    local seconds = math.floor(time)
    if time >= 0 then
      add_generated(tree, F.time, NSTime.new(seconds, math.floor((time - seconds) * 1e9 + 0.5)))
    end
  end
  for _, link in ipairs(LINKS) do
    local number = note[link.field]
    if number then
      add_generated(tree, F[link.field], number):add_proto_expert_info(link.expert)
    end
  end
end

-- What is missing is explained once, as truncated, and not as malformed where the bytes end. Texts are few,
-- so that a list of them counts.
local function add_experts(tree, frame, note, whole)
  if not frame.head then
    return tree:add_proto_expert_info(E.noise)
  end
  if not whole then
    return tree:add_proto_expert_info(E.not_captured)
  end
  if frame.cut then
    tree:add_proto_expert_info(E.cut)
  end
  if frame.bad_check then
    tree:add_proto_expert_info(E.bad_check)
  end
  if frame.verdict == "malformed" and not (frame.cut and frame.fault_at == #frame.raw) then
    tree:add_proto_expert_info(E.malformed, "Malformed frame: " .. frame.fault)
  end
  if frame.other_station then
    tree:add_proto_expert_info(E.other_station)
  elseif frame.verdict == "mismatch" then
    tree:add_proto_expert_info(E.mismatch)
  end
  if note.unasked then
    tree:add_proto_expert_info(E.unasked)
  end
  if frame.error then
    tree:add_proto_expert_info(E.refused, string.format("Request refused: %04X, %s", frame.error,
      frames.refusals[frame.error] or "an unknown error code"))
  end
end

local function show(root, tvb, from, frame, note, pinfo, whole)
  local text = frames.summary(frame)
  local tree = root:add(cnet, tvb(from, #frame.raw), "MASTER-K Cnet, " .. text)
  add_parts(tree, frame, tvb, from)
  if whole then
    add_generated(tree, F.verdict, frame.verdict)
  end
  if frame.fault and whole then
    add_generated(tree, F.fault, frame.fault)
    add_generated(tree, F.fault_offset, frame.fault_at)
  end
  add_links(tree, note, frame, pinfo)
  add_experts(tree, frame, note, whole)
  return text
end

-- Dissectors --------------------------------------------------------------------------------------------------

local START = "[\5\6\21][01]%x[rRwW]S[SB]"
local START_SO_FAR = { "^[\5\6\21]$", "^[\5\6\21][01]$", "^[\5\6\21][01]%x$", "^[\5\6\21][01]%x[rRwW]$",
  "^[\5\6\21][01]%x[rRwW]S$" }

-- Other protocols have the same ports. Once a stream has had a frame, all that it has belongs to it. What
-- was not taken for Cnet on the first pass is not later, when more is known of its stream.
local function is_ours(line, raw, pinfo)
  if pinfo.visited then
    return taken[pinfo.number]
  end
  local found = line.has_frames or raw:find(START) ~= nil
  for _, pattern in ipairs(START_SO_FAR) do
    found = found or raw:find(pattern) ~= nil
  end
  line.has_frames = found
  taken[pinfo.number] = taken[pinfo.number] or found
  return found
end

local function dissect(tvb, pinfo, root)
  local size = tvb:len()
  if size == 0 then
    return 0
  end
  local raw = tvb:raw(0, size)
  local line, book, learns = line_of(pinfo)
  if pinfo.port_type == TCP and not is_ours(line, raw, pinfo) then
    return 0
  end
  local place = { line = line, book = book, learns = learns, way = way_of(pinfo) }
  local texts = {}
  local from = 1
  while from <= size do
    local last, more = frames.cut(raw, from)
    if more and pinfo.can_desegment > 0 then
      pinfo.desegment_offset = from - 1
      pinfo.desegment_len = DESEGMENT_ONE_MORE_SEGMENT
      break
    end
    -- Where a packet holds several frames, or one and the end of another, each has its place.
    local key = string.format("%d %d %d", pinfo.number, tvb:offset() + from, size)
    local whole = not (more and tvb:reported_len() > size)
    local frame, note = understand(raw:sub(from, last), key, place, pinfo, whole)
    texts[#texts + 1] = show(root, tvb, from - 1, frame, note, pinfo, whole)
    from = last + 1
  end
  if #texts > 0 then
    pinfo.cols.protocol = "Cnet"
    pinfo.cols.info = table.concat(texts, " | ")
  end
  return size
end

cnet.dissector = dissect

local function dissect_if_cnet(tvb, pinfo, root)
  if not tvb:raw(0, math.min(tvb:len(), 6)):find("^" .. START) then
    return false
  end
  pinfo.conversation = cnet
  dissect(tvb, pinfo, root)
  return true
end

local tcp_ports = DissectorTable.get("tcp.port")
local registered_ports

local function register_ports()
  if registered_ports and registered_ports ~= "" then
    tcp_ports:remove(registered_ports, cnet)
  end
  registered_ports = tostring(cnet.prefs.tcp_ports)
  if registered_ports ~= "" then
    tcp_ports:add(registered_ports, cnet)
  end
end

cnet.prefs_changed = register_ports
register_ports()
tcp_ports:add_for_decode_as(cnet)
DissectorTable.get("rtacser.data"):add_for_decode_as(cnet)
cnet:register_heuristic("tcp", dissect_if_cnet)

-- The load of the soak test, for wrk: asks for pages of all kinds, a tenth of which end in a fatal
-- error, and compares every answer, whole or as a pattern.
local PAGE = os.getenv("SOAK_PAGE") -- the checksum of the good page

local kinds = {
  page = {body = PAGE}, reentry = {body = PAGE},
  string = {body = "A0=&lt;;x=&amp;;"},
  missing = {body = "Could not open file nowhere.tpl"},
  wrong = {body = "Missing closing tag in {optional a}{dynamic r,b}"},
  fiber = {body = "suspended"},
  deep = {body = "Template nesting is too deep in"},
  memory = {pattern = "Fatal error: .*Allowed memory size"},
  usermemory = {pattern = "Fatal error: "},
  time = {pattern = "Fatal error: .*Maximum execution time"},
}
-- ninety of a hundred end well or by user code's leave, ten in a fatal error
local shares = {page = 33, reentry = 5, string = 24, missing = 5, wrong = 5, fiber = 3, deep = 1, memory = 2, usermemory = 1}
for _, place in ipairs({"string", "fiber", "notice", "warning", "open", "read", "close"}) do
  kinds[place .. "-throw"] = {body = "thrown"}
  kinds[place .. "-exit"] = {body = "left"}
  kinds[place .. "-die"] = {pattern = "Fatal error: .*Cannot r?e?declare class Text"}
  for _, act in ipairs({"throw", "exit", "die"}) do shares[place .. "-" .. act] = 1 end
end

local plan = {}
for kind, count in pairs(shares) do
  for _ = 1, count do plan[#plan + 1] = kind end
end

local threads = {}
function setup(thread)
  table.insert(threads, thread)
end

local asked = 0
function init()
  counts, fatals, faults, said = 0, 0, 0, 0
end

function request()
  asked = asked + 1
  local kind = plan[asked * 37 % #plan + 1]
  if asked % 5000 == 0 then kind = "time" end
  return wrk.format("GET", "/" .. kind)
end

function delay()
  return 2
end

function response(status, headers, body)
  counts = counts + 1
  local expected = kinds[headers["X-Kind"]]
  if expected and status == 200 and (body == expected.body or expected.pattern and body:find(expected.pattern)) then
    if expected.pattern then fatals = fatals + 1 end
    return
  end
  faults = faults + 1
  if said < 5 then
    said = said + 1
    io.stderr:write(string.format("wrong answer: %s %d %s\n", tostring(headers["X-Kind"]), status, body:sub(1, 300)))
  end
end

function done(summary)
  local counts, fatals, faults = 0, 0, 0
  for _, thread in ipairs(threads) do
    counts = counts + thread:get("counts")
    fatals = fatals + thread:get("fatals")
    faults = faults + thread:get("faults")
  end
  local errors = summary.errors
  print(string.format("requests %d fatal-errors %d faults %d connection-errors %d", counts, fatals, faults,
    errors.connect + errors.read + errors.write + errors.timeout))
end

-- The load of the soak test, for wrk: asks for pages of all kinds, a tenth of which end in a fatal
-- error, and compares every answer, whole or as a pattern.
local PAGE = os.getenv("SOAK_PAGE") -- the checksum of the good page

local kinds = {
  page = {status = 200, body = PAGE}, reentry = {status = 200, body = PAGE},
  string = {status = 200, body = "A0=&lt;;x=&amp;;"},
  missing = {status = 200, body = "Could not open file nowhere.tpl"},
  wrong = {status = 200, body = "Missing closing tag in {optional a}{dynamic r,b}"},
  exception = {status = 200, body = "thrown"},
  exit = {status = 200, body = "left"},
  fiber = {status = 200, body = "suspended"},
  deep = {status = 200, body = "Template nesting is too deep in"},
  dead = {status = 200, pattern = "Fatal error: .*Cannot r?e?declare class Text"},
  memory = {status = 200, pattern = "Fatal error: .*Allowed memory size"},
  usermemory = {status = 200, pattern = "Fatal error: "},
  time = {status = 200, pattern = "Fatal error: .*Maximum execution time"},
}

-- ninety of a hundred end well or in an exception, ten in a fatal error
local plan = {}
for kind, count in pairs({page = 34, reentry = 5, string = 20, missing = 8, wrong = 8, exception = 5,
    exit = 5, fiber = 4, deep = 1, dead = 6, memory = 2, usermemory = 2}) do
  for _ = 1, count do plan[#plan + 1] = kind end
end

local threads = {}
function setup(thread)
  table.insert(threads, thread)
end

local asked = 0
function init()
  counts, faults, said = 0, 0, 0
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
  if expected and status == expected.status
    and (body == expected.body or expected.pattern and body:find(expected.pattern)) then
    return
  end
  faults = faults + 1
  if said < 5 then
    said = said + 1
    io.stderr:write(string.format("wrong answer: %s %d %s\n", tostring(headers["X-Kind"]), status, body:sub(1, 300)))
  end
end

function done(summary)
  local counts, faults = 0, 0
  for _, thread in ipairs(threads) do
    counts = counts + thread:get("counts")
    faults = faults + thread:get("faults")
  end
  local errors = summary.errors
  print(string.format("requests %d faults %d connection-errors %d", counts, faults,
    errors.connect + errors.read + errors.write + errors.timeout))
end

-- For wrk: asks at a steady rate (WEB_DELAY milliseconds between the requests of a connection; 0 for as fast as it goes)
-- and compares each answer with the two releases, in the files WEB_OLD and WEB_NEW.
local function content(name)
  local file = assert(io.open(name, "rb"))
  local text = file:read("*a")
  file:close()
  return text
end

local wait = tonumber(os.getenv("WEB_DELAY"))
if wait > 0 then
  function delay() return wait end
end

local threads = {}
function setup(thread) table.insert(threads, thread) end

function init()
  old, new = content(os.getenv("WEB_OLD")), content(os.getenv("WEB_NEW"))
  olds, news, mixed, refused = 0, 0, 0, 0
end

function response(status, headers, body)
  if status ~= 200 then
    refused = refused + 1
    if refused <= 3 then io.stderr:write(string.format("status %d: %s\n", status, body:sub(1, 100))) end
  elseif body == old then
    olds = olds + 1
  elseif body == new then
    news = news + 1
  else
    mixed = mixed + 1
  end
end

function done(summary, latency)
  local sum = {olds = 0, news = 0, mixed = 0, refused = 0}
  for _, thread in ipairs(threads) do
    for name in pairs(sum) do sum[name] = sum[name] + thread:get(name) end
  end
  local e = summary.errors
  print(string.format("requests %d failed %d old %d new %d mixed %d p50 %.2f p99 %.2f max %.0f seconds %.2f bytes %d",
    summary.requests, sum.refused + e.connect + e.read + e.write + e.timeout, sum.olds, sum.news, sum.mixed,
    latency:percentile(50) / 1000, latency:percentile(99) / 1000, latency.max / 1000, summary.duration / 1e6, summary.bytes))
end

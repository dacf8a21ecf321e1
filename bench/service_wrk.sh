#!/usr/bin/env bash
# Throughput and latency of stagebeacon-service on loopback, measured with
# wrk from more connections than the server has threads (as many clients
# would come). The figure is a realistic mix of the requests a search makes:
# GETSITES and the site event pages for twenty cities, several radii and
# the sites, the cities' coordinates and DISPLAY_USER_SHOWS, with a third of
# the requests on URLs never asked before (a radius that differs per
# request), which the server's one-second reply cache cannot answer. The
# floor, measured just before it in the same run at the same concurrency, is
# the server's tiny static reply (/health): the cost of the connection and
# the HTTP exchange alone.
#
# Goal: the mix serves at least a quarter of the floor's requests per second,
# and its 99th-percentile latency stays under 100 ms.
#   bench/service_wrk.sh   (BENCH_SECONDS=5, BENCH_CONNECTIONS=32, 2 server threads)
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
bin=${STAGEBEACON_BUILD:-$root/build}/service/stagebeacon-service
seconds=${BENCH_SECONDS:-5}
connections=${BENCH_CONNECTIONS:-32}
threads=${BENCH_SERVER_THREADS:-2}
[[ -x "$bin" ]] || { echo "build first: $bin missing" >&2; exit 1; }
command -v wrk >/dev/null || { echo "wrk missing: run scripts/setup" >&2; exit 1; }

work=$(mktemp -d)
source "$root/scripts/service.sh"
"$bin" seed "$root/resources/demo" --db "$work/bench.db" >/dev/null
start_service "$bin" "$work/bench.db" --threads "$threads"
url=$service_url

# The mix: every request picks the next path; one in three gets a radius
# no request used before.
cat >"$work/mix.lua" <<'LUA'
local cities = {}
for line in io.lines(os.getenv("PLACES")) do
  local city, region = line:match("^([^#,][^,]*),([^,]+),")
  if city and city ~= "city" then cities[#cities + 1] = {city:gsub(" ", "+"), region} end
end
local n = 0
request = function()
  n = n + 1
  local c = cities[n % #cities + 1]
  local radius = (n % 3 == 0) and tostring(1000 + n) or tostring(25 * (n % 4 + 1))
  local kind = n % 5
  local path
  if kind == 0 then
    path = "/datasources/datasources.php?TODO=GETSITES&CITY=" .. c[1] .. "&STATE=" .. c[2] ..
           "&RADIUS=" .. radius .. "&VERSION=2.9"
  elseif kind == 1 then
    path = "/zipcodes/zipcodes.php?TODO=GETLATLON&CITY=" .. c[1] .. "&STATE=" .. c[2] ..
           "&N=" .. radius
  elseif kind == 2 then
    path = "/sharing/sharing.php?TODO=DISPLAY_USER_SHOWS&USERNAME=alice&N=" .. radius
  else
    path = "/events/events.php?site=" .. (n % 7 + 1) .. "&city=" .. c[1] .. "&state=" .. c[2] ..
           "&radius=" .. radius
  end
  return wrk.format("GET", path)
end
LUA

measure() { # path or "mix" -> "requests/s avg-latency p99-latency"
  local args=(-t1 -c"$connections" -d"${seconds}s" --latency)
  if [[ $1 == mix ]]; then
    PLACES="$root/resources/demo/places.csv" wrk "${args[@]}" -s "$work/mix.lua" "$url" >"$work/wrk" 2>&1
  else
    wrk "${args[@]}" "$url$1" >"$work/wrk" 2>&1
  fi
  if grep -q 'Non-2xx\|Socket errors' "$work/wrk"; then
    echo "service_wrk: errors during the run:" >&2
    grep 'Non-2xx\|Socket errors' "$work/wrk" >&2
    return 1
  fi
  awk '/Requests\/sec:/ {r=$2} $1 == "Latency" && !a {a=$2} $1 == "99%" {p=$2} END {print r, a, p}' "$work/wrk"
}

to_ms() { # wrk's "1.23ms", "456.00us" or "1.2s" -> milliseconds
  awk -v t="$1" 'BEGIN { v = t + 0; if (t ~ /us$/) v /= 1000; else if (t ~ /[^m]s$/) v *= 1000; print v }'
}

echo "stagebeacon-service on $url, $threads server threads, wrk -t1 -c$connections -d${seconds}s"
read -r floor floor_avg floor_p99 < <(measure /health)
read -r rps avg p99 < <(measure mix)
ratio=$(awk -v a="$rps" -v b="$floor" 'BEGIN { printf "%.2f", (b > 0 ? a / b : 0) }')
p99ms=$(to_ms "$p99")
printf '  %-34s %10s req/s  avg %8s  p99 %8s\n' "mix, a third uncached" "$rps" "$avg" "$p99"
printf '  %-34s %10s req/s  avg %8s  p99 %8s\n' "/health (floor)" "$floor" "$floor_avg" "$floor_p99"
printf '  ratio mix / floor                  %10s\n' "$ratio"
met=0
if awk -v r="$ratio" 'BEGIN { exit !(r >= 0.25) }'; then
  echo "  goal: the mix at a quarter of the floor's requests per second or more ... met"
else
  echo "  goal: the mix at a quarter of the floor's requests per second or more ... MISSED"; met=1
fi
if awk -v p="$p99ms" 'BEGIN { exit !(p < 100) }'; then
  echo "  goal: the mix's p99 latency under 100 ms ... met"
else
  echo "  goal: the mix's p99 latency under 100 ms ... MISSED"; met=1
fi
exit $met

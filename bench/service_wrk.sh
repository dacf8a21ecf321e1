#!/usr/bin/env bash
# Throughput and latency of stagebeacon-service on loopback, measured with
# wrk: GETSITES, one site's event page and DISPLAY_USER_SHOWS, each beside
# a tiny static reply (/health) served by the same server just before it,
# which is the floor the ratio is taken against (the machine is shared and
# its load changes from one second to the next). wrk keeps connections open.
#   bench/service_wrk.sh            (BENCH_SECONDS=5 by default per endpoint)
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
bin=${STAGEBEACON_BUILD:-$root/build}/service/stagebeacon-service
seconds=${BENCH_SECONDS:-5}
connections=${BENCH_CONNECTIONS:-8}
[[ -x "$bin" ]] || { echo "build first: $bin missing" >&2; exit 1; }
command -v wrk >/dev/null || { echo "wrk missing: run scripts/setup" >&2; exit 1; }

work=$(mktemp -d)
source "$root/scripts/service.sh"
"$bin" seed "$root/resources/demo" --db "$work/bench.db" >/dev/null
start_service "$bin" "$work/bench.db" --threads "$connections"
url=$service_url

# name|path
endpoints=(
  "static floor|/health"
  "GETSITES|/datasources/datasources.php?TODO=GETSITES&CITY=Boston&STATE=MA&RADIUS=50&VERSION=2.9"
  "event page|/events/events.php?site=1&city=Boston&state=MA&radius=50"
  "DISPLAY_USER_SHOWS|/sharing/sharing.php?TODO=DISPLAY_USER_SHOWS&USERNAME=alice"
)

measure() { # path -> "requests/s avg-latency p99-latency"
  wrk -t1 -c"$connections" -d"${seconds}s" --latency "$url$1" >"$work/wrk" 2>&1
  local rps avg p99
  rps=$(awk '/Requests\/sec:/ {print $2}' "$work/wrk")
  avg=$(awk '$1 == "Latency" {print $2; exit}' "$work/wrk")
  p99=$(awk '$1 == "99%" {print $2}' "$work/wrk")
  if grep -q 'Non-2xx\|Socket errors' "$work/wrk"; then
    grep 'Non-2xx\|Socket errors' "$work/wrk" >&2
  fi
  echo "$rps $avg $p99"
}

echo "stagebeacon-service on $url, wrk -t1 -c$connections -d${seconds}s, $(nproc) cores"
echo "(the floor is measured again just before each endpoint; the ratio is to that run)"
printf '%-20s %12s %10s %10s %12s %9s\n' endpoint "requests/s" "avg" "p99" "floor req/s" "vs floor"
floor_path=${endpoints[0]#*|}
for entry in "${endpoints[@]:1}"; do
  name=${entry%%|*}
  read -r floor _ _ < <(measure "$floor_path")
  read -r rps avg p99 < <(measure "${entry#*|}")
  ratio=$(awk -v a="$rps" -v b="$floor" 'BEGIN { printf "%.2f", (b > 0 ? a / b : 0) }')
  printf '%-20s %12s %10s %10s %12s %9s\n' "$name" "$rps" "$avg" "$p99" "$floor" "$ratio"
done

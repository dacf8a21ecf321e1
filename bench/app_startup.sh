#!/usr/bin/env bash
# How fast the app shows its first frame: `stagebeacon` started under Xvfb
# with the shows of an earlier search saved, from the moment the script
# starts it until the calendar with those shows is drawn (the app logs the
# wall-clock time of its first frame with --exit-after-first-frame, then
# quits). The floor, measured in the same run, is the same program opening a
# bare window of the same size (--bare-window): what starting GTK and any
# window costs here. Also printed: a start of the program that exits before
# GTK (--help), the cost of loading it with its libraries. Goal: the app's
# median under 100 ms; the script fails when it is missed.
#   bench/app_startup.sh     (BENCH_STARTS=15 by default)
set -euo pipefail

root=$(cd "$(dirname "$0")/.." && pwd)
build=${STAGEBEACON_BUILD:-$root/build}
app=$build/host/stagebeacon
player=$build/host/stagebeacon-player
plugin=$build/plugin/libstagebeacon.so
service=$build/service/stagebeacon-service
starts=${BENCH_STARTS:-15}
goal_ms=100
for f in "$app" "$player" "$plugin" "$service"; do
  [[ -e "$f" ]] || { echo "build first: $f missing" >&2; exit 1; }
done
command -v Xvfb >/dev/null || { echo "app_startup: Xvfb is missing (scripts/setup)" >&2; exit 1; }

work=$(mktemp -d)
xvfb_pid=
on_exit() { [[ -n "$xvfb_pid" ]] && kill "$xvfb_pid" 2>/dev/null && wait "$xvfb_pid" 2>/dev/null; true; }
source "$root/scripts/service.sh"
start_service "$service" "$work/bench.db"

# The saved shows: one search for Boston, MA in the player, saved on quit.
export HOME=$work/home STAGEBEACON_SERVICE=$service_url XDG_CONFIG_HOME=$work/config
support="$HOME/Library/Application Support/Stagebeacon"
mkdir -p "$support" "$HOME/Music/iTunes"
cp "$root/resources/sample-library/iTunes Music Library.xml" "$HOME/Music/iTunes/"
printf '%s\n' "$HOME/Music/iTunes/iTunes Music Library.xml" 1 "2000@@1@@1" \
  "Boston@@MA@@75@@4.236010e+01@@-7.105890e+01" >"$support/StagebeaconPref"
printf 'show 0 0 1100 700\nwait-updates 60\nquit\n' |
  "$player" --headless --script - --log /dev/null "$plugin"
grep -q '@@Radiohead@@' "$support/StagebeaconPref" || { echo "app_startup: no shows saved" >&2; exit 1; }
# From here on the service is not needed: the first frame must not wait for it.
export STAGEBEACON_SERVICE=http://127.0.0.1:9

display=:$(( 90 + RANDOM % 400 ))
Xvfb "$display" -screen 0 1920x1080x24 -nolisten tcp >/dev/null 2>&1 &
xvfb_pid=$!
export DISPLAY=$display NO_AT_BRIDGE=1
unset DBUS_SESSION_BUS_ADDRESS
for _ in $(seq 50); do xdpyinfo >/dev/null 2>&1 && break; [[ -e /tmp/.X11-unix/X${display#:} ]] && break; sleep 0.1; done

once() { # microseconds from exec to the first frame
  local start frame
  rm -f "$work/frame.log"
  start=$(date +%s%N)
  "$app" --size 1100x700 --exit-after-first-frame --log "$work/frame.log" "$@"
  frame=$(awk '/^first frame at / { print $4 }' "$work/frame.log")
  [[ -n "$frame" ]] || { echo "app_startup: no first frame logged: $(cat "$work/frame.log")" >&2; exit 1; }
  echo $(( (${frame%.*} - start / 1000000000) * 1000000 + 10#${frame#*.} - (start / 1000) % 1000000 ))
}
loaded() { # microseconds from exec to exit, GTK never started
  local start end
  start=$(date +%s%N)
  "$app" --help >/dev/null
  end=$(date +%s%N)
  echo $(( (end - start) / 1000 ))
}
median() { sort -n | awk '{ v[NR] = $1 } END { print v[int((NR + 1) / 2)] }'; }

once >/dev/null; once --bare-window >/dev/null # warm the caches
app_times=(); bare_times=(); load_times=()
for _ in $(seq "$starts"); do
  load_times+=("$(loaded)")
  bare_times+=("$(once --bare-window)")
  app_times+=("$(once)")
done
app_us=$(printf '%s\n' "${app_times[@]}" | median)
bare_us=$(printf '%s\n' "${bare_times[@]}" | median)
load_us=$(printf '%s\n' "${load_times[@]}" | median)
echo "load average: $(cut -d' ' -f1-3 /proc/loadavg)"
awk -v a="$app_us" -v b="$bare_us" -v l="$load_us" -v g="$goal_ms" -v n="$starts" 'BEGIN {
  printf "start to first frame, median of %d: app %.1f ms, bare window %.1f ms (goal: app under %d ms)\n", n, a / 1000, b / 1000, g
  printf "loading the program and its libraries alone (--help): %.1f ms\n", l / 1000
  printf "ratio app / bare window: %.2f\n", a / b
  if (a / 1000 >= g) { print "app_startup: goal missed"; exit 1 }
}'

# Sourced by the demo and the benchmarks: starts stagebeacon-service on a
# free loopback port and stops it when the calling script exits.
#   start_service BINARY DB [OPTION...]   sets service_url and service_pid
# The caller's own clean-up, if any, goes in its `on_exit` function; the
# folder in $work (when set) is removed last.

service_pid=
service_url=

_service_exit() {
  if declare -F on_exit >/dev/null; then on_exit; fi
  if [[ -n "$service_pid" ]]; then
    kill "$service_pid" 2>/dev/null || true
    wait "$service_pid" 2>/dev/null || true
  fi
  if [[ -n "${work:-}" ]]; then rm -rf "$work"; fi
}

start_service() {
  local binary=$1 db=$2 log
  shift 2
  log=$(mktemp)
  trap _service_exit EXIT
  "$binary" --db "$db" --listen 127.0.0.1:0 "$@" >"$log" 2>&1 &
  service_pid=$!
  for _ in $(seq 100); do
    service_url=$(grep -o 'http://127\.0\.0\.1:[0-9]*' "$log" || true)
    [[ -n "$service_url" ]] && break
    kill -0 "$service_pid" 2>/dev/null || break
    sleep 0.1
  done
  if [[ -z "$service_url" ]]; then
    echo "stagebeacon-service did not start:" >&2
    cat "$log" >&2
    rm -f "$log"
    return 1
  fi
  rm -f "$log"
}

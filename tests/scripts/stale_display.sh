#!/usr/bin/env bash
# `prefix.sh down` ends the display that it started and no process that has come to have its number.
#
#   stale_display.sh PREFIX.SH FOLDER     in FOLDER a prefix is written down that was never made
set -euo pipefail

prefix_script=$1
export ORV_PREFIX=$2/prefix
mkdir -p "$2"
sleep 300 &
innocent=$!
trap 'kill "$innocent" 2>/dev/null || true' EXIT

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    exit 1
}
is_running() { kill -0 "$innocent" 2>/dev/null && [ "$(ps -o stat= -p "$innocent")" != Z ]; }

start=$(sed 's/.*) //' "/proc/$innocent/stat" | cut -d' ' -f20)
for line in ":77 $innocent" ":77 $innocent $((start + 1))" ":77 $innocent " ':77' 'none of this' ":77 -1 $start" ''; do
    printf '%s\n' "$line" >"$ORV_PREFIX.display"
    "$prefix_script" down
    is_running || fail "'$line' had an innocent process ended"
    [ ! -e "$ORV_PREFIX.display" ] || fail "'$line' stays behind"
done

# The same file with the right start names a process that is ours.
printf ':77 %s %s\n' "$innocent" "$start" >"$ORV_PREFIX.display"
"$prefix_script" down
wait "$innocent" && fail "the process that was written down went on"
echo "passed"

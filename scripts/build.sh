#!/usr/bin/env bash
# Builds one preset from nothing; what was built before is reused.
#
#   scripts/build.sh PRESET        x64-release, x64-debug, x86-release, x64-coverage, lint
#
# The built files are in build/PRESET/bin.
. "$(dirname "$0")/lib.sh"

case "${1:-}" in
-h | --help) show_help ;;
'') die "name a preset; see --help" ;;
esac
preset=$1

"$ORV_ROOT/scripts/bootstrap.sh"
cd "$ORV_ROOT"
log="$ORV_ROOT/build/$preset/build.log"
mkdir -p "$(dirname "$log")"
if ! { cmake --preset "$preset" && cmake --build --preset "$preset"; } >"$log" 2>&1; then
    grep -E 'error|Error|FAILED|warning' "$log" | head -n 40 >&2 || tail -n 40 "$log" >&2
    die "building $preset failed; the whole output is in $log"
fi

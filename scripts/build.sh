#!/usr/bin/env bash
# Builds the preset that ORV_PRESET names (x64-release); what was built before is reused.
#
#   scripts/build.sh
#
# The built files are in build/PRESET/bin, signed for this machine alone; what is given to others scripts/release.sh makes.
# CMakePresets.json lists the presets.
. "$(dirname "$0")/lib.sh"
[ $# -eq 0 ] || misused "unexpected '$1': ORV_PRESET names the preset"

case $ORV_PRESET in
*-clang-*) "$ORV_ROOT/scripts/bootstrap.sh" --clang ;;
*) "$ORV_ROOT/scripts/bootstrap.sh" ;;
esac
cd "$ORV_ROOT"
log="$ORV_ROOT/build/$ORV_PRESET/build.log"
mkdir -p "$(dirname "$log")"
if ! { cmake --preset "$ORV_PRESET" && cmake --build --preset "$ORV_PRESET"; } >"$log" 2>&1; then
    grep -E 'error|Error|FAILED|warning' "$log" | head -n 40 >&2 || tail -n 40 "$log" >&2
    die "building $ORV_PRESET failed; the whole output is in $log"
fi

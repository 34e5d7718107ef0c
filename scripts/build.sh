#!/usr/bin/env bash
# Builds the preset that ORV_PRESET names (x64-release); what was built before is reused.
#
#   scripts/build.sh [--release]
#
#   --release   what is given to customers: refused unless the environment names the maker's own signer, as
#               scripts/signing.sh says
#
# The built files are in build/PRESET/bin. CMakePresets.json lists the presets.
. "$(dirname "$0")/lib.sh"
release=OFF
case "${1:-}" in
--release) release=ON ;;
'') ;;
*) misused "unexpected '$1': ORV_PRESET names the preset" ;;
esac

case $ORV_PRESET in
*-clang-*) "$ORV_ROOT/scripts/bootstrap.sh" --clang ;;
*) "$ORV_ROOT/scripts/bootstrap.sh" ;;
esac
cd "$ORV_ROOT"
log="$ORV_ROOT/build/$ORV_PRESET/build.log"
mkdir -p "$(dirname "$log")"
if ! { cmake --preset "$ORV_PRESET" -DORV_RELEASE="$release" && cmake --build --preset "$ORV_PRESET"; } >"$log" 2>&1; then
    grep -E 'error|Error|FAILED|warning' "$log" | head -n 40 >&2 || tail -n 40 "$log" >&2
    die "building $ORV_PRESET failed; the whole output is in $log"
fi

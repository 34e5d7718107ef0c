#!/usr/bin/env bash
# Builds the product and passes all tests, installing what that needs (as root or with sudo).
#
#   ./test.sh [CTEST-OPTION...]      for example: ./test.sh -R driver
#
# Everything happens in build/x64-release; a Wine prefix of its own is made there and stopped at the end.
. "$(dirname "$0")/scripts/lib.sh"

case "${1:-}" in -h | --help) show_help ;; esac

start_s=$SECONDS
step "Building x64-release"
"$ORV_ROOT/scripts/build.sh" x64-release
trap '"$ORV_ROOT/scripts/prefix.sh" down' EXIT
step "Setting up the Wine prefix"
"$ORV_ROOT/scripts/install.sh" driver
# Left over from a run that was killed, it would be the one service side that the driver lets in.
"$ORV_ROOT/scripts/service.sh" stop
step "Testing"
cd "$ORV_ROOT/build/x64-release"
result=0
timeout --kill-after=30 1200 ctest -j2 --output-on-failure "$@" || result=$?
say "Screenshots of the windows are in build/x64-release/screenshots. Whole run: $((SECONDS - start_s)) s."
exit "$result"

#!/usr/bin/env bash
# Runs shellcheck on every shell script of the project; fails on any finding.
#
#   scripts/check-shell.sh
. "$(dirname "$0")/lib.sh"
expect_end "$@"

"$ORV_ROOT/scripts/bootstrap.sh" --lint
cd "$ORV_ROOT"
mapfile -t scripts < <(git ls-files '*.sh' && git grep -lE '^#!.*\b(ba)?sh$' -- ':!*.sh')
shellcheck "${scripts[@]}"
say "${#scripts[@]} scripts, no finding"

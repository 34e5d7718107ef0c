#!/usr/bin/env bash
# Formats the project's C and C++ files with clang-format.
#
#   scripts/format.sh            rewrites what is not formatted
#   scripts/format.sh --check    changes nothing; fails when something would change
. "$(dirname "$0")/lib.sh"

case "${1:-}" in
--check) arguments=(--dry-run -Werror) ;;
'') arguments=(-i) ;;
*) misused "unknown option '$1'" ;;
esac
"$ORV_ROOT/scripts/bootstrap.sh" --lint
cd "$ORV_ROOT"
git ls-files -z '*.cpp' '*.h' '*.c' | xargs -0 -r clang-format "${arguments[@]}"

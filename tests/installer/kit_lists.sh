#!/usr/bin/env bash
# The kit for Windows runs each test program, or says why it does not.
#
#   kit_lists.sh
set -euo pipefail
cd "$(dirname "$0")/../.."
programs=$(grep -rhoPz 'orv_test_program\(\s*\K[a-z0-9_]+' tests --include=CMakeLists.txt | tr '\0' '\n' | sort)
# This one check.cmd runs among those that need an administrator.
listed=$({ cut -d' ' -f1 installer/kit/tests.txt installer/kit/left_out.txt && echo module_registration_tests; } | sort)
diff <(printf '%s\n' "$programs") <(printf '%s\n' "$listed") >&2 ||
    { echo "'<' is missing in the kit's lists, '>' is no test program, or is listed twice" >&2 && exit 1; }
! grep -vE ' [a-z]' installer/kit/left_out.txt >&2 || { echo "these are left out without a reason" >&2 && exit 1; }
echo "passed: $(wc -l <<<"$programs") programs"

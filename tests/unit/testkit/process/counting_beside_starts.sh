#!/usr/bin/env bash
# Counting what a process has taken harms nobody while programs start beside it: Wine's server once died of it, and with
# it whatever ran in the prefix.
#
#   counting_beside_starts.sh SCRIPTS TESTKIT_TESTS     in a prefix that is up
set -euo pipefail

scripts=$1
program=$2
# shellcheck source=../../../../scripts/lib.sh
. "$scripts/lib.sh"
wine_environment

count_for_long() {
    run_wine 60 "$program" --gtest_filter=ProcessCosts.nothing_taken_nothing_has_grown --gtest_repeat=-1 \
        --gtest_fail_fast >/dev/null 2>&1
}
count_for_long &
counting=$!
# It has ended when the test fails.
trap 'kill "$counting" 2>/dev/null || true' EXIT

# Only a start from outside of Wine leaves a process without a handle for a moment.
for start in {1..30}; do
    run_wine 20 cmd /c exit || die "start $start failed"
    kill -0 "$counting" 2>/dev/null || die "start $start ended the program that counts"
done
echo "passed"

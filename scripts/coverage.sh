#!/usr/bin/env bash
# Passes all tests in a build that counts what is executed, and lists what of the product none of them reached.
#
#   scripts/coverage.sh [--report]
#
#   --report   the list alone, from what was counted before
#
# Lines and branches of each file go to build/x64-coverage/coverage.txt, each line of code with its counts to
# coverage/index.html beside it. Branches that only an exception takes are left out.
. "$(dirname "$0")/lib.sh"
export ORV_PRESET=x64-coverage

report_only=
if [ "${1:-}" = --report ]; then
    report_only=yes
    shift
fi
expect_end "$@"

"$ORV_ROOT/scripts/bootstrap.sh" --coverage
cd "$ORV_ROOT"
build=build/$ORV_PRESET
result=0
if [ -z "$report_only" ]; then
    [ ! -d "$build" ] || find "$build" -name '*.gcda' -delete
    # The checks of the built files are for what ships. The counters are written while the process ends, by functions of
    # Windows that the module itself does not call, and so the libraries keep the compiler's entry point: nothing draws
    # the stack guard's number and closes the runtime's semaphores. To run longer reaches nothing more.
    entry_point='Unload.loads_that_open_the_port_cost_the_host_nothing:StackGuard.number_is_another_one_at_each_load'
    GTEST_FILTER="-$entry_point:FailingImports.*" \
        ./test.sh -E '^image_|^module_exit_tests$' -LE '^(long|soak)$' || result=$?
fi
mkdir -p "$build/coverage"
gcovr --root . --object-directory "$build" --gcov-executable x86_64-w64-mingw32-gcov \
    --filter '(module|ovufc|service|shell|namespace)/' \
    --exclude-throw-branches --exclude-unreachable-branches \
    --html-details "$build/coverage/index.html" --txt "$build/coverage.txt" --json "$build/coverage.json" "$build"
cat "$build/coverage.txt"
exit "$result"

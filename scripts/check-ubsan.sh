#!/usr/bin/env bash
# Builds module, companions and tests with a second compiler, clang, that traps on undefined behaviour, and with the
# assertions of the C++ library (an index beyond the end, a value that is not there), and passes the test programs.
#
#   scripts/check-ubsan.sh [CTEST-OPTION...]     all programs, or those that the options pick
#
# A trap ends the program as an illegal instruction (0xC000001D), of which a debugger shows the line; an assertion says
# what it is about. Left out are the checks of the built files and of the sources, which this build does not change, and
# the story and the windows of the small Explorer, which take minutes and meet no code that the other programs do not.
. "$(dirname "$0")/lib.sh"
export ORV_PRESET=x64-clang-ubsan

chosen=("$@")
[ $# -gt 0 ] || chosen=(-LE '^(long|soak)$' -E '^(image|arrows|script|ui)_')
exec "$ORV_ROOT/test.sh" "${chosen[@]}"

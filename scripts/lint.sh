#!/usr/bin/env bash
# Runs clang-tidy on the project's sources; fails on any finding.
#
#   scripts/lint.sh [FILE...]    all sources unless files are named
. "$(dirname "$0")/lib.sh"

[[ ${1:-} != -* ]] || misused "unknown option '$1'"

"$ORV_ROOT/scripts/bootstrap.sh" --lint --bench
cd "$ORV_ROOT"
cmake --preset lint >/dev/null

files=("$@")
if [ ${#files[@]} -eq 0 ]; then
    mapfile -t files < <(git ls-files '*.cpp' '*.c')
fi

# clang reads GCC's headers for the target; what GCC alone understands is no finding.
gcc_include=$(x86_64-w64-mingw32-g++ -print-file-name=include)
cxx_include=$(dirname "$gcc_include")/include/c++
tidy=(timeout 300 clang-tidy-22 -p build/lint --quiet --extra-arg=--target=x86_64-w64-mingw32
    --extra-arg=-isystem"$cxx_include" --extra-arg=-isystem"$cxx_include/x86_64-w64-mingw32"
    --extra-arg=-Wno-unknown-warning-option --extra-arg=-Wno-ignored-attributes
    --extra-arg=-Wno-unnecessary-virtual-specifier --extra-arg=-Wno-deprecated-declarations)

printf '%s\0' "${files[@]}" | xargs -0 -n1 -P"$(nproc)" "${tidy[@]}"

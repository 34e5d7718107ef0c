#!/usr/bin/env bash
# Runs clang-tidy on the product's sources; fails on any finding.
#
#   scripts/lint.sh [FILE...]    all product sources unless files are named
. "$(dirname "$0")/lib.sh"

"$ORV_ROOT/scripts/bootstrap.sh" --lint
cd "$ORV_ROOT"
cmake --preset lint >/dev/null
files=("$@")
if [ ${#files[@]} -eq 0 ]; then
    mapfile -t files < <(git ls-files 'module/*.cpp' 'ovufc/*.cpp' 'service/*.cpp' 'shell/*.cpp' 'namespace/*.cpp')
fi
# clang reads GCC's headers for the target; what GCC alone understands is no finding.
gcc_include=$(x86_64-w64-mingw32-g++ -print-file-name=include)
cxx_include=$(dirname "$gcc_include")/include/c++
printf '%s\0' "${files[@]}" | xargs -0 -n1 -P"$(nproc)" timeout 300 clang-tidy -p build/lint --quiet \
    --extra-arg=--target=x86_64-w64-mingw32 --extra-arg=-isystem"$cxx_include" \
    --extra-arg=-isystem"$cxx_include/x86_64-w64-mingw32" --extra-arg=-Wno-unknown-warning-option \
    --extra-arg=-Wno-ignored-attributes

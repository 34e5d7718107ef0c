#!/usr/bin/env bash
# Compiles every file of the module for 64-bit ARM, up to the point where code would be written: nothing may tie the
# product to x64 by accident. There are no libraries to link it with.
#
#   scripts/check-arm64.sh
. "$(dirname "$0")/lib.sh"
expect_end "$@"
export ORV_PRESET=x64-clang-ubsan

"$ORV_ROOT/scripts/bootstrap.sh" --clang
step "Compiling the module for ARM64"
start_s=$SECONDS
cd "$ORV_ROOT"
timeout 120 cmake --preset "$ORV_PRESET" >/dev/null
# The headers of mingw-w64 and of GCC's C++ library serve every architecture; clang looks for them below the name of
# the one that it compiles for.
cxx_headers=$(x86_64-w64-mingw32-g++ -print-file-name=include)/c++
target="--target=aarch64-w64-mingw32 -fsyntax-only -isystem $cxx_headers -isystem $cxx_headers/x86_64-w64-mingw32"
target+=" -isystem /usr/x86_64-w64-mingw32/include"
commands=$(ninja -C "build/$ORV_PRESET" -t commands orvshellext | grep -E 'clang\+\+.* -c ' |
    sed -E "s,--target=[^ ]+,$target,; s, -MD -MT [^ ]+ -MF [^ ]+ -o [^ ]+ -c , ,")
count=$(wc -l <<<"$commands")
[ "$count" -gt 50 ] || die "only $count files of the module were found"
cd "build/$ORV_PRESET"
timeout --kill-after=10 1200 xargs -d '\n' -n1 -P"$(nproc)" bash -c <<<"$commands" || die "not every file compiles"
say "$count files compile for ARM64 ($((SECONDS - start_s)) s)."

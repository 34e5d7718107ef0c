#!/usr/bin/env bash
# Makes the release of the same sources in two folders of different names, and finds its files the same byte for byte:
# package, symbols for gdb, notices, bill of materials. They are not signed: a signature holds its time. The symbols for
# Windows' debuggers hold the time and the folder, as the linker writes them, and are left out.
#
#   scripts/check-reproducible.sh
. "$(dirname "$0")/lib.sh"
expect_end "$@"

other="$ORV_ROOT/build/reproducible/another folder"
limit_s=900

# The sources as they are, changes that nobody committed yet among them.
copy_sources() {
    mkdir -p "$1"
    (cd "$ORV_ROOT" && git ls-files -z | xargs -0 tar -c --ignore-failed-read 2>/dev/null) | tar -x -C "$1"
}

release_in() {
    local start_s=$SECONDS log="$ORV_ROOT/build/reproducible/release.log"
    if ! timeout --kill-after=10 "$limit_s" "$1/scripts/release.sh" --unsigned --no-kit >"$log" 2>&1; then
        tail -n 20 "$log" >&2
        die "the release in $1 failed"
    fi
    say "  $(sha256sum "$1"/build/release/*.msi | cut -d' ' -f1)  ${1##*/}, $((SECONDS - start_s)) s"
}

SOURCE_DATE_EPOCH=$(git -C "$ORV_ROOT" log -1 --format=%ct)
export SOURCE_DATE_EPOCH
rm -rf "$ORV_ROOT/build/reproducible"
copy_sources "$other"
step "Making the release twice; the sums of the packages are"
release_in "$ORV_ROOT"
# A cache of compiled files would compare a file with itself.
CCACHE_DISABLE=1 release_in "$other"
diff -r -x '*.pdb' -x SHA256SUMS "$ORV_ROOT/build/release" "$other/build/release" >&2 || die "the two releases differ"
cmp <(grep -v '\.pdb$' "$ORV_ROOT/build/release/SHA256SUMS") <(grep -v '\.pdb$' "$other/build/release/SHA256SUMS") >&2 ||
    die "the lists of sums differ"
rm -rf "$ORV_ROOT/build/reproducible"
step "The two releases are the same"

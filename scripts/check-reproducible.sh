#!/usr/bin/env bash
# Builds the module from the same sources in two folders of different names, and finds the two files the same byte for
# byte. They are not signed: a signature holds its time.
#
#   scripts/check-reproducible.sh
. "$(dirname "$0")/lib.sh"
expect_end "$@"

work="$ORV_ROOT/build/reproducible"
preset=x64-release
module="build/$preset/bin/orvshellext.dll"
limit_s=900

# The sources as they are, changes that nobody committed yet among them.
copy_sources() {
    mkdir -p "$1"
    (cd "$ORV_ROOT" && git ls-files -z | xargs -0 tar -c --ignore-failed-read 2>/dev/null) | tar -x -C "$1"
}

build_in() {
    local folder=$1 start_s=$SECONDS
    copy_sources "$folder"
    # A cache of compiled files would compare a file with itself.
    if ! (cd "$folder" && export CCACHE_DISABLE=1 SOURCE_DATE_EPOCH="$commit_time" &&
        timeout 120 cmake --preset "$preset" -DORV_MODULE_ONLY=ON -DORV_UNSIGNED=ON &&
        timeout --kill-after=10 "$limit_s" cmake --build --preset "$preset" --target orvshellext) >"$folder.log" 2>&1; then
        tail -n 20 "$folder.log" >&2
        die "building in $folder failed; the whole output is in $folder.log"
    fi
    say "  $(sha256sum <"$folder/$module" | cut -d' ' -f1)  ${folder##*/}, $((SECONDS - start_s)) s"
}

"$ORV_ROOT/scripts/bootstrap.sh"
commit_time=$(git -C "$ORV_ROOT" log -1 --format=%ct)
rm -rf "$work"
step "Building the module twice"
build_in "$work/one"
build_in "$work/another folder"
cmp "$work/one/$module" "$work/another folder/$module" >&2 || die "the two files differ"
rm -rf "$work"
step "The two files are the same"

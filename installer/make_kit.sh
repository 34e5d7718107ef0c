#!/usr/bin/env bash
# Makes the kit for trying a release on a Windows machine: the package, the libraries, the test programs that need no
# driver, and check.cmd, which runs them.
#
#   installer/make_kit.sh FOLDER NAME
#
# FOLDER holds NAME.msi and files/, what went into it; the kit becomes FOLDER/NAME-windows-check.zip.
. "$(dirname "$0")/../scripts/lib.sh"
[ $# = 2 ] || misused "name a folder and a release, not '$*'"
release=$1
name=$2-windows-check
here="$ORV_ROOT/installer/kit"
x64="$ORV_ROOT/build/x64-release"
x86="$ORV_ROOT/build/x86-release"

mapfile -t tests < <(cut -d' ' -f1 "$here/tests.txt")
log="$x64/kit.log"
{ cmake --build "$x64" --target "${tests[@]}" module_registration_tests shellhost module_user &&
    cmake --build "$x86" --target module_user; } >"$log" 2>&1 ||
    { tail -n 20 "$log" >&2 && die "the kit's programs could not be built; the whole output is in $log"; }

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
kit="$work/$name"
mkdir -p "$kit"/{bin,tests}
cp "$release/files/x64"/*.dll "$x64/bin"/{shellhost,module_user}.exe "$kit/bin/"
cp "$x86/bin/module_user.exe" "$kit/bin/module_user_32.exe"
for test in "${tests[@]}" module_registration_tests; do
    cp "$x64/bin/$test.exe" "$kit/tests/"
done
# The tests look for the libraries beside themselves.
cp "$release/files/x64"/*.dll "$x64/bin/guarded_sample.dll" "$kit/tests/"
cp "$release/$2.msi" "$kit/"
# The same files at another time: another package of the same product, which Windows refuses beside the first.
mkdir "$kit/another build"
SOURCE_DATE_EPOCH=$((SOURCE_DATE_EPOCH + 2)) "$ORV_ROOT/installer/make_msi.sh" "$release/files" "$(version_of_tree)" \
    "$kit/another build/$2.msi"
# Windows' command processor loses its place in lines that end otherwise.
for text in check.cmd tests.txt left_out.txt; do
    sed 's/$/\r/' "$here/$text" >"$kit/$text"
done
find "$work" -exec touch -d "@$SOURCE_DATE_EPOCH" {} +
(cd "$work" && find "$name" -type f | sort | TZ=UTC zip -q -X -9 -@ "$release/$name.zip")

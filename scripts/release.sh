#!/usr/bin/env bash
# Makes what is given to an administrator, in build/release: the package, the symbols, what it is made of, the sums.
#
#   scripts/release.sh [--development | --unsigned] [--no-kit]
#
#   --development   signs with this build's own authority, which no other machine trusts; the names say so. Without it
#                   the environment has to name the maker's certificate, as scripts/signing.sh says.
#   --unsigned      signs nothing: what two machines build from one commit is then the same byte for byte
#   --no-kit        leaves out the kit for trying the release on a Windows machine, which needs all test programs
#
# The version is that of res/version.h, the time that of the commit, or SOURCE_DATE_EPOCH. docs/releasing.md says what is what.
. "$(dirname "$0")/lib.sh"

kind=signed
kit=yes
while [ $# -gt 0 ]; do
    case $1 in
    --development | --unsigned)
        [ "$kind" = signed ] || misused "$1 and --$kind exclude each other"
        kind=${1#--}
        ;;
    --no-kit) kit=no ;;
    *) misused "unexpected '$1'" ;;
    esac
    shift
done
[ "$ORV_PRESET" = x64-release ] || misused "a release is made of x64-release and x86-release, not of ORV_PRESET=$ORV_PRESET"
if [ "$kind" = signed ]; then
    "$ORV_ROOT/scripts/signing.sh" check-signer
else
    unset ORV_SIGNING_PKCS12 ORV_SIGNING_TIMESTAMP_URL
fi

release="$ORV_ROOT/build/release"
authority="$ORV_ROOT/build/x64-release/signing"
# What ships, for each of the two widths; the installer's own library is 64-bit.
libraries=(orvshellext orvres orvdialog)
SOURCE_DATE_EPOCH=${SOURCE_DATE_EPOCH:-$(git -C "$ORV_ROOT" log -1 --format=%ct)}
export SOURCE_DATE_EPOCH

# The libraries are linked anew: those that lie there may carry another commit's time.
build() {
    local preset=$1 log="$ORV_ROOT/build/$1/release.log"
    shift
    mkdir -p "$(dirname "$log")"
    step "Building $preset"
    (cd "$ORV_ROOT" && rm -f "${@/#/build/$preset/bin/}" && cmake --preset "$preset" &&
        cmake --build --preset "$preset" --target "${@%.dll}") >"$log" 2>&1 ||
        { tail -n 20 "$log" >&2 && die "building $preset failed; the whole output is in $log"; }
}

# collect PRESET FOLDER LIBRARY...: the files as they came from the linker, and their symbols.
collect() {
    local bin="$ORV_ROOT/build/$1/bin" folder=$2 library
    shift 2
    mkdir -p "$files/$folder" "$release/symbols/${folder#.}"
    for library in "$@"; do
        osslsigncode remove-signature -in "$bin/$library.dll" -out "$files/$folder/$library.dll" >/dev/null ||
            die "$library.dll has no signature to take off"
        if [ "$library" != orvres ]; then
            cp "$bin/$library.dll.debug" "$bin/$library.pdb" "$release/symbols/$folder/"
        fi
    done
}

# The files as they ship; that they are guarded, the tests of the build say, which has the symbols at hand.
check_images() {
    local file check
    for file in "$@"; do
        for check in imports hardening version; do
            "$ORV_ROOT/tests/image/check_image.sh" "$check" "$file" >/dev/null
        done
    done
}

sign_all() {
    local file
    for file in "$@"; do
        "$ORV_ROOT/scripts/signing.sh" sign "$authority" "$file"
    done
}

check_all() {
    if [ "$kind" = signed ]; then
        "$ORV_ROOT/scripts/signing.sh" check-release "$@"
    else
        "$ORV_ROOT/scripts/signing.sh" check "$authority" "$@"
    fi
}

"$ORV_ROOT/scripts/bootstrap.sh" --release
build x64-release "${libraries[@]/%/.dll}" orvsetup.dll
build x86-release "${libraries[@]/%/.dll}"
version=$(version_of_tree)
name=OrvaneVaultkeep-$version
[ "$kind" = signed ] || name+=-$kind

step "Making $name"
rm -rf "$release"
files="$release/files"
collect x64-release x64 "${libraries[@]}" orvsetup
mv "$files/x64/orvsetup.dll" "$files/"
collect x86-release x86 "${libraries[@]}"
mapfile -t images < <(find "$files" -name '*.dll' | sort)
check_images "${images[@]}"
"$ORV_ROOT/installer/linked_packages.sh" >"$release/linked"
"$ORV_ROOT/installer/make_notices.sh" "$release/linked" >"$files/NOTICES.txt"
cp "$files/NOTICES.txt" "$release/"
if [ "$kind" != unsigned ]; then
    sign_all "${images[@]}"
fi
"$ORV_ROOT/installer/make_msi.sh" "$files" "$version" "$release/$name.msi"
if [ "$kind" != unsigned ]; then
    sign_all "$release/$name.msi"
    check_all "${images[@]}" "$release/$name.msi"
fi
"$ORV_ROOT/installer/make_bill.sh" "$release/linked" "$version" "$files" >"$release/$name.spdx.json"
if [ "$kit" = yes ]; then
    "$ORV_ROOT/installer/make_kit.sh" "$release" "$name"
fi
rm -rf "$files" "$release/linked"
sums=$(cd "$release" && find . -type f -printf '%P\0' | sort -z | xargs -0 sha256sum)
say "$sums" >"$release/SHA256SUMS"
find "$release" -exec touch -d "@$SOURCE_DATE_EPOCH" {} +
step "Made in ${release#"$ORV_ROOT/"}"
say "$sums"

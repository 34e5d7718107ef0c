#!/usr/bin/env bash
# Prints the Debian packages whose code is in the shipped libraries of both presets, "PACKAGE VERSION LICENCE" a line:
# the objects of others that the linker took, from archives and by themselves, as its maps say, and the headers that the
# compiler read.
#
#   installer/linked_packages.sh
. "$(dirname "$0")/../scripts/lib.sh"
expect_end "$@"
cd "$ORV_ROOT/build"

shipped='orvshellext|orvres|orvdialog|orvsetup'
rooms='ovufc|module|service|shell|namespace|companions/orvdialog|installer'

objects() {
    local map
    for map in x64-release/bin/*.map x86-release/bin/*.map; do
        [[ $map =~ /($shipped)\.map$ ]] || continue
        # "ARCHIVE(MEMBER)" at the beginning of a line is a member that was taken; an archive that is loaded may give none.
        sed -nE 's/^(\/[^(]*)\(.*/\1/p; s/^LOAD (\/.*\.o)$/\1/p' "$map"
    done
}

headers() {
    local preset
    for preset in x64-release x86-release; do
        ninja -C "$preset" -t deps | awk -v rooms="^($rooms)/" '
            /^[^ ].*: #deps/ { wanted = $0 ~ rooms; next }
            wanted && /^ / { sub(/^ +/, ""); print }' |
            sed "s|^third_party/|/usr/include/|; s|^$ORV_ROOT/build/$preset/third_party/|/usr/include/|"
    done
}

licence_of() {
    case $1 in
    nlohmann-json3-dev | rapidjson-dev) printf 'MIT' ;;
    gcc-mingw-w64-* | g++-mingw-w64-*) printf 'GPL-3.0-or-later WITH GCC-exception-3.1' ;;
    mingw-w64-*) printf 'LicenseRef-mingw-w64-runtime' ;;
    *) die "'$1' is in what ships, and nobody has looked at its licence" ;;
    esac
}

files=$({ objects && headers; } | grep '^/usr/' | sort -u | xargs realpath | sort -u)
[ -n "$files" ] || die "nothing has been built"
# A file that no package owns is no file of the system: dpkg ends with a failure, and so does this.
packages=$(xargs dpkg -S <<<"$files" | cut -d: -f1 | sort -u)
while IFS= read -r package; do
    licence=$(licence_of "$package")
    printf '%s %s %s\n' "$package" "$(dpkg-query -W -f '${Version}' "$package")" "$licence"
done <<<"$packages"

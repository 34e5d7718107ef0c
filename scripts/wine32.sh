#!/usr/bin/env bash
# Fetches what Debian's 64-bit Wine lacks to run 32-bit programs, into build/wine32. Nothing is installed: the
# package wine32 would take the 64-bit Wine's place.
#
#   scripts/wine32.sh
#
# Wine looks there when WINEDLLPATH names it, as it does for ORV_PRESET=x86-release. The folder holds the libraries for
# 32-bit programs, from Debian's libwine for i386 in the version of the installed one, beside links to the system's
# own libraries.
. "$(dirname "$0")/lib.sh"
expect_end "$@"

"$ORV_ROOT/scripts/bootstrap.sh"
target="$ORV_ROOT/build/wine32"
version=$(dpkg-query -W -f '${Version}' libwine)
[ "$(cat "$target/version" 2>/dev/null)" != "$version" ] || exit 0
system=$(dpkg -L libwine | grep '/x86_64-unix$') || die "the installed libwine has no 64-bit libraries"

step "Fetching Wine's 32-bit libraries ($version)"
work="$target.new"
log="$target.log"
rm -rf "$work"
mkdir -p "$work"/{lists/partial,cache/archives/partial,unpacked}
# A package state of its own: the machine's knows no i386, and need not.
private=(-o Dir::State::lists="$work/lists" -o Dir::Cache="$work/cache" -o Acquire::Languages=none
    -o APT::Architectures::=amd64 -o APT::Architectures::=i386)
# Not every source may have i386; what counts is that the package comes.
timeout 300 apt-get "${private[@]}" update >"$log" 2>&1 || true
if ! (cd "$work" && timeout 600 apt-get "${private[@]}" download "libwine:i386=$version") >>"$log" 2>&1; then
    tail -n 10 "$log" >&2
    die "libwine:i386 $version could not be fetched; the whole output is in $log"
fi
timeout 120 dpkg -x "$work"/libwine_*_i386.deb "$work/unpacked"
mv "$work/unpacked/usr/lib/i386-linux-gnu/wine/i386-windows" "$work/"
rm -rf "$work"/{lists,cache,unpacked,libwine_*_i386.deb}
ln -s "$system" "$work/x86_64-unix"
ln -s "${system%unix}windows" "$work/x86_64-windows"
printf '%s' "$version" >"$work/version"
rm -rf "$target"
mv "$work" "$target"

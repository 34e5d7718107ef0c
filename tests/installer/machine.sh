# A machine to install on: a Wine prefix of its own, and what the cases ask of it. To be sourced, with lib.sh before it.
# shellcheck shell=bash disable=SC2154  # set by scripts/check-installer.sh
#
# A case works in $ORV_PREFIX and keeps its papers in $work, which Wine knows as Z:$work.

fail() {
    printf 'FAILED [%s] %s\n' "${FUNCNAME[-2]}" "$*" >&2
    failures=$((failures + 1))
}

# A new machine for each case. The files of Wine itself, which nobody changes, are shared by links; the registry, which
# is written in place, is not.
new_machine() {
    old_machine
    cp -al "$template" "$ORV_PREFIX"
    local hive
    for hive in "$template"/*.reg; do
        cp --remove-destination "$hive" "$ORV_PREFIX/"
    done
    start_machine
}

start_machine() {
    "$ORV_ROOT/scripts/prefix.sh" up
    wine_environment
}

# As a person would: everything ends, the registry is saved.
stop_machine() {
    "$ORV_ROOT/scripts/prefix.sh" down
    # It fails where the server has ended already, which is what is waited for.
    timeout 30 wineserver -w || true
}

old_machine() {
    [ ! -d "$ORV_PREFIX" ] || stop_machine
    rm -rf "$ORV_PREFIX"
}

# The next start of the system: that deletes what was to be deleted then.
restart_machine() {
    stop_machine
    start_machine
    run_wine 60 wineboot || fail "wineboot ended with $?"
}

# msi WORD...: the installer without a word to the user. Of its exit code a Unix process sees the low byte.
msi() {
    local status=0 word words=()
    for word in "$@"; do
        [ ! -f "$word" ] || word=Z:$word
        words+=("$word")
    done
    run_wine 120 msiexec "${words[@]}" /qn '/l*v' "Z:$work/log.txt" || status=$?
    case $status in
    194) printf 3010 ;;
    67) printf 1603 ;;
    102) printf 1638 ;;
    *) printf '%s' "$status" ;;
    esac
}

# expect_msi CODE WORD...
expect_msi() {
    local wanted=$1 found start_ms
    shift
    start_ms=$(date +%s%3N)
    found=$(msi "$@")
    say "    msiexec $1 ${2##*/}: $found in $(($(date +%s%3N) - start_ms)) ms"
    if [ "$found" != "$wanted" ]; then
        fail "'msiexec $*' ended with $found, not $wanted"
        tail -n 15 "$work/log.txt" >&2
    fi
}

product_of() { msiinfo export "$1" Property | tr -d '\r' | sed -n 's/^ProductCode\t{\(.*\)}$/\1/p'; }
package_of() { msiinfo suminfo "$1" | sed -n 's/^Revision number.*: //p'; }

log_holds() { grep -qF "$1" "$work/log.txt" || fail "the log does not say '$1'"; }

# Every key and value of the registry, one a line, without the times.
registry() {
    local hive
    for hive in system user userdef; do
        tr -d '\r' <"$ORV_PREFIX/$hive.reg" | awk -v hive="$hive" '
            /^\[/ { sub(/\] [0-9]+$/, "]"); key = hive $0; print key; next }
            /^[@"]/ { print key " " $0; next }
            /^  / { print key " ..." $0 }'
    done | sort
}

file_tree() { (cd "$ORV_PREFIX" && find . -path ./home -prune -o -printf '%P %y\n' | sort); }

# What the machine is like, read while it is off.
snapshot() {
    stop_machine
    registry >"$work/$1.registry"
    file_tree >"$work/$1.files"
    start_machine
}

# expect_difference FROM TO FILE: the differences between two snapshots are the lines of FILE, "+" for what has come
# and "-" for what has gone. What Wine writes for itself when it starts is no difference.
expect_difference() {
    local kind
    for kind in registry files; do
        diff "$work/$1.$kind" "$work/$2.$kind" | sed -n "s/^> /+ $kind /p; s/^< /- $kind /p"
    done | grep -vEf <(grep -v "^#" "$cases/of_wine.txt") >"$work/difference" ||
        [ $? = 1 ] # no line is left; a pattern that cannot be read is 2
    diff "$3" "$work/difference" >"$work/unexpected" || {
        fail "between '$1' and '$2' lie ('<' should, '>' should not):"
        head -n 40 "$work/unexpected" >&2
    }
}

expect_same() { expect_difference "$1" "$2" /dev/null; }

installed="drive_c/Program Files/Orvane/Vaultkeep"
installed_32="drive_c/windows/syswow64"

# expect_files: the installed files are those of the package, and no others of ours lie about.
expect_files() {
    local found
    found=$(cd "$ORV_PREFIX" && find drive_c -iname 'orv*.dll*' -o -name NOTICES.txt | sort)
    [ "$found" = "$(printf '%s\n' "$installed"/{NOTICES.txt,orvdialog.dll,orvres.dll,orvshellext.dll} \
        "$installed_32"/{orvdialog.dll,orvres.dll,orvshellext.dll} | sort)" ] || fail "installed are: $found"
}

expect_no_files() {
    local found
    found=$(cd "$ORV_PREFIX" && find drive_c -iname 'orv*' -o -name NOTICES.txt)
    [ -z "$found" ] || fail "these files stay: $found"
}

x64="$ORV_ROOT/build/x64-release/bin"
x86="$ORV_ROOT/build/x86-release/bin"

# expect_use VERSION: new processes of both widths find the module by the registry, in this version, with its texts.
expect_use() {
    local found
    found=$(run_wine 30 "$x64/module_user.exe" | tr -d '\r' || true)
    [ "$found" = "C:\\Program Files\\Orvane\\Vaultkeep\\orvshellext.dll, version $1, menu 'Orvane'" ] ||
        fail "a 64-bit program gets '$found'"
    found=$(run_wine 30 "$x86/module_user.exe" | tr -d '\r' || true)
    [ "${found,,}" = "c:\\windows\\syswow64\\orvshellext.dll, version $1, menu 'orvane'" ] ||
        fail "a 32-bit program gets '$found'"
}

expect_no_use() {
    local width found
    for width in "$x64" "$x86"; do
        found=$(run_wine 30 "$width/module_user.exe" | tr -d '\r' || true)
        [ "$found" = 'CoCreateInstance: 0x80040154' ] || fail "a program still gets '$found'"
    done
}

# Programs of both widths that use the module until release_module. Waits until they do.
holders=()
hold_module() {
    local width
    for width in x64 x86; do
        rm -f "$work/held-$width"
        run_wine 120 "${!width}/module_user.exe" "Z:$work/held-$width" >"$work/holder-$width.txt" &
        holders+=($!)
    done
    local waited=0
    until [ -e "$work/held-x64" ] && [ -e "$work/held-x86" ]; do
        sleep 0.1
        waited=$((waited + 1))
        [ "$waited" -lt 300 ] || die "the module could not be held"
    done
}

# They went on with what they had, and end by themselves.
release_module() {
    local width holder
    rm -f "$work"/held-*
    for holder in "${holders[@]}"; do
        wait "$holder" || fail "a program that used the module ended with $?"
    done
    holders=()
    for width in x64 x86; do
        grep -q "^still 'Orvane'" "$work/holder-$width.txt" || fail "a $width program lost the module: $(cat "$work/holder-$width.txt")"
    done
}

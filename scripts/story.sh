#!/usr/bin/env bash
# The product's story, played in a build's Wine prefix: a folder is protected, wrecked, and brought back by One Click
# Restore; then an earlier version of a file. Fails unless every byte comes back.
#
#   scripts/story.sh [--keep]
#
#   --keep   leaves the product installed at the end
#
# Every window is a real one; `click_button` clicks its buttons. Pictures of them are in build/PRESET/screenshots.
# ORV_PRESET names the build (x64-release), ORV_PREFIX another prefix than its own.
. "$(dirname "$0")/lib.sh"
keep=no
case "${1:-}" in
--keep) keep=yes ;;
'') ;;
*) misused "unknown option '$1'" ;;
esac

bin="$ORV_ROOT/build/$ORV_PRESET/bin"
pictures="$ORV_ROOT/build/$ORV_PRESET/screenshots"

set_up() {
    step "Installing certificate, driver, service and module into the Wine prefix"
    "$ORV_ROOT/scripts/install.sh" install
    wine_environment
    mkdir -p "$pictures"
}

# Each shellhost says which functions of the system it supplies, on standard error; a reader of the story is told once.
supplied_was_said=no
host() {
    local notes result=0
    notes=$(mktemp)
    run_wine 120 "$bin/shellhost.exe" "$@" 2>"$notes" | tr -d '\r' || result=$?
    if [ "$supplied_was_said" = no ]; then
        supplied_was_said=yes
        cat "$notes" >&2
    else
        # Nothing may be left to print, which grep would call a failure.
        grep -v '^This system lacks these; supplied' "$notes" >&2 || true
    fi
    rm -f "$notes"
    return "$result"
}
service() { run_wine 60 "$bin/orvsvc.exe" "$@" | tr -d '\r'; }
hashes() { (cd "$1" && find . -type f -print0 | sort -z | xargs -0 sha256sum); }

picture() { import -window root -trim +repage "$pictures/$1.png" && say "  (picture: build/$ORV_PRESET/screenshots/$1.png)"; }

# click_in NAME TITLE BUTTON [DOWN]: waits for a window, goes DOWN lines down in its list, takes its picture and
# clicks.
click_in() {
    run_wine 60 "$bin/click_button.exe" --title "$2" --button "$3" --down "${4:-0}" --timeout 30 --wait-only | tr -d '\r'
    picture "$1"
    run_wine 60 "$bin/click_button.exe" --title "$2" --button "$3" --quiet
}

# menu_shows TEXT: right-clicks the folder, prints the menu, and fails unless it holds TEXT.
menu_shows() {
    local menu
    menu=$(host menu "$windows_folder")
    say "$menu"
    grep -qF "$1" <<<"$menu" || die "the menu does not show '$1'"
}

# A folder of files as people have them: pictures, text, a name beyond ASCII, a folder inside.
make_folder() {
    folder="$WINEPREFIX/drive_c/Orvane demo/Holiday photos"
    rm -rf "$folder"
    mkdir -p "$folder/2026/Zürich"
    cp "$ORV_ROOT"/res/icons/*.ico "$folder"
    cp "$ORV_ROOT/res/svg/103.svg" "$folder/2026/Zürich/drawing – first draft.svg"
    for number in 1 2 3 4 5; do
        printf 'Day %s of the holiday. %s\n' "$number" "$(seq -s ' ' 1 "$((number * 200))")" >"$folder/2026/day $number.txt"
    done
    windows_folder='C:\Orvane demo\Holiday photos'
}

# The window of the small Explorer, driven line by line: tell COMMAND waits until it is done.
open_window() {
    coproc WINDOW { run_wine 200 "$bin/shellhost.exe" --script --browse "$1" 2>/dev/null; }
    tell wait
}
tell() {
    local line
    printf '%s\n' "$1" >&"${WINDOW[1]}"
    while IFS= read -r line <&"${WINDOW[0]}"; do
        case ${line%$'\r'} in
        ok) return 0 ;;
        error:*) die "shellhost: $1: $line" ;;
        *) ;;
        esac
    done
    die "shellhost ended at: $1"
}
close_window() {
    local window=$WINDOW_PID
    eval "exec ${WINDOW[1]}>&-"
    wait "$window"
}

protect() {
    # Where an earlier story was broken off.
    if grep -qxF "protected: $windows_folder" <<<"$(service list)"; then
        service unprotect "$windows_folder"
    fi
    step "A right-click on a folder that is not protected: the one item is greyed"
    menu_shows "Not protected"
    step "Protecting it as the product's console does"
    service protect "$windows_folder"
    step "The same right-click now"
    menu_shows "Unprotect folder"
    step "In the small Explorer: a right-click on the folder, then Orvane, then Protection settings..."
    open_window 'C:\Orvane demo'
    tell "right-click Holiday photos"
    tell wait-menu
    tell "click-menu Orvane"
    sleep 1
    picture menu
    tell "click-menu Protection settings..."
    tell wait-dialog
    click_in protect "Orvane Vaultkeep - Protection" 1
    tell wait
    close_window
}

wreck() {
    step "Taking a restore point"
    service restore-point
    hashes "$folder" >"$pictures/before.sha256"
    step "What ransomware would do: files overwritten, renamed and deleted, a note left behind"
    local file
    find "$folder" -type f -name '*.txt' -print0 | while IFS= read -r -d '' file; do
        head -c 4096 /dev/urandom >"$file" && mv "$file" "$file.locked"
    done
    head -c 4096 /dev/urandom >"$folder/103.ico"
    rm -rf "$folder/2026/Zürich"
    printf 'Your files are encrypted.\n' >"$folder/READ ME.txt"
    find "$folder" -type f -printf '  %P\n' | sort
}

restore() {
    step "One Click Restore: its verb is run as by a double-click, and confirmed twice"
    host verbs --restore >"$pictures/restore.txt" &
    local invoking=$!
    click_in restore-first "Orvane Vaultkeep" 1
    sleep 0.5
    click_in restore-second "Orvane Vaultkeep" 1
    wait "$invoking"
    cat "$pictures/restore.txt"
    if hashes "$folder" | diff "$pictures/before.sha256" - >/dev/null; then
        say "Every file is byte for byte what it was ($(wc -l <"$pictures/before.sha256") files)."
    else
        # Only shows what differs; the next line is the failure.
        hashes "$folder" | diff "$pictures/before.sha256" - || true
        die "the folder did not come back as it was"
    fi
}

# A tracked file's own menu. The service marks files where a file system keeps the mark and a filter opens them; below
# Wine nothing does, so shellhost answers the product's question for it, and says so.
versions() {
    local file="$folder/2026/day 1.txt" version
    step "A file whose history is kept: written three times, each version kept"
    for version in one two three; do
        printf 'Version %s of a day.\n' "$version" >"$file"
        service restore-point
        sha256sum <"$file" >"$pictures/version-$version.sha256"
    done
    printf 'Spoiled.\n' >"$file"
    step "Its own menu; the item opens the list of versions, where the one before the newest is restored"
    host menu "$windows_folder\\2026\\day 1.txt" --tracked --invoke 0 >"$pictures/versions.txt" &
    local invoking=$!
    click_in versions "Orvane Vaultkeep - Earlier versions" 124 1
    wait "$invoking"
    cat "$pictures/versions.txt"
    sha256sum <"$file" | cmp -s - "$pictures/version-two.sha256" || die "the file is not what its second version was"
    say "The file is byte for byte what its second version was."
}

unprotect() {
    step "Unprotecting the folder by the menu"
    host menu "$windows_folder" --invoke 1 >"$pictures/unprotect.txt" &
    local invoking=$!
    click_in unprotect "Orvane Vaultkeep" 1
    wait "$invoking"
    tail -n 1 "$pictures/unprotect.txt"
    menu_shows "Not protected"
}

explorer() {
    step "The folder \"Orvane\" as text"
    host list
    step "The folder \"Orvane\" in the small Explorer"
    host --close-after 6 &
    local showing=$!
    run_wine 60 "$bin/click_button.exe" --title "Orvane" --timeout 40 --wait-only --quiet
    sleep 2
    picture explorer
    wait "$showing"
}

# However it ends: a service that is left running keeps the driver from whoever comes next.
clean_up() {
    local result=$?
    trap - EXIT
    step "Taking the product out again"
    "$ORV_ROOT/scripts/install.sh" remove || result=1
    exit "$result"
}

[ "$keep" = yes ] || trap clean_up EXIT
set_up
make_folder
protect
wreck
restore
versions
explorer
unprotect

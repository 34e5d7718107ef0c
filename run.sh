#!/usr/bin/env bash
# Builds the product and shows it at work in a private Wine prefix, installing what that needs (as root or with
# sudo): a folder is protected by a right-click, wrecked, and brought back by One Click Restore.
#
#   ./run.sh
#
# Every window is a real one; `press` clicks its buttons. Pictures of them are in build/x64-release/screenshots.
# With a display of your own, a window of the small Explorer stays open at the end until you close it.
. "$(dirname "$0")/scripts/lib.sh"
case "${1:-}" in
-h | --help) show_help ;;
'') ;;
*) die "unknown option '$1'; see --help" ;;
esac

bin="$ORV_ROOT/build/$ORV_PRESET/bin"
pictures="$ORV_ROOT/build/$ORV_PRESET/screenshots"
own_display=${DISPLAY:-}

stop_what_was_started() {
    trap - EXIT
    [ -x "$bin/orvsvc.exe" ] && "$ORV_ROOT/scripts/service.sh" stop >/dev/null 2>&1
    "$ORV_ROOT/scripts/prefix.sh" down
}

set_up() {
    step "Building $ORV_PRESET"
    "$ORV_ROOT/scripts/build.sh" "$ORV_PRESET"
    trap stop_what_was_started EXIT
    trap 'exit 130' INT TERM
    step "Installing certificate, driver, service and module into the Wine prefix"
    "$ORV_ROOT/scripts/install.sh" install
    wine_environment
    mkdir -p "$pictures"
}

host() { run_wine 120 "$bin/shellhost.exe" "$@" | tr -d '\r'; }
service() { run_wine 60 "$bin/orvsvc.exe" "$@" | tr -d '\r'; }
in_windows() { run_wine 20 winepath -w "$1" | tr -d '\r'; }
hashes() { (cd "$1" && find . -type f -print0 | sort -z | xargs -0 sha256sum); }

picture() { import -window root "$pictures/$1.png" && say "  (picture: build/$ORV_PRESET/screenshots/$1.png)"; }

# press_window NAME TITLE BUTTON: waits for a window, takes its picture, clicks.
press_window() {
    run_wine 60 "$bin/press.exe" --title "$2" --button "$3" --timeout 30 --wait-only | tr -d '\r'
    picture "$1"
    run_wine 60 "$bin/press.exe" --title "$2" --button "$3" --quiet
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

protect() {
    step "A right-click on a folder that is not protected"
    host menu "$windows_folder"
    step "Protecting it: the command opens the protection dialog, whose OK is pressed"
    host menu "$windows_folder" --invoke 0 >"$pictures/protect.txt" &
    local invoking=$!
    press_window protect "Orvane" 1
    wait "$invoking"
    tail -n 1 "$pictures/protect.txt"
    step "The same right-click now"
    host menu "$windows_folder"
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
    press_window restore-first "Orvane Vaultkeep" 1
    sleep 0.5
    press_window restore-second "Orvane Vaultkeep" 1
    wait "$invoking"
    cat "$pictures/restore.txt"
    if hashes "$folder" | diff "$pictures/before.sha256" - >/dev/null; then
        say "Every file is byte for byte what it was ($(wc -l <"$pictures/before.sha256") files)."
    else
        hashes "$folder" | diff "$pictures/before.sha256" - || true
        die "the folder did not come back as it was"
    fi
}

unprotect() {
    step "Unprotecting the folder by the menu"
    host menu "$windows_folder" --invoke 1 >"$pictures/unprotect.txt" &
    local invoking=$!
    press_window unprotect "Orvane Vaultkeep" 1
    wait "$invoking"
    tail -n 1 "$pictures/unprotect.txt"
    host menu "$windows_folder"
}

explorer() {
    step "The folder \"Orvane\" as text"
    host list
    step "The folder \"Orvane\" in the small Explorer"
    host --close-after 12 &
    local showing=$!
    run_wine 60 "$bin/press.exe" --title "Orvane" --timeout 40 --wait-only --quiet
    sleep 3
    picture explorer
    wait "$showing"
    if [ -n "$own_display" ]; then
        say "The window is open on your display; close it to end."
        DISPLAY=$own_display run_wine 86400 "$bin/shellhost.exe"
    fi
}

set_up
make_folder
protect
wreck
restore
explorer
unprotect
step "Done"

# The cases of scripts/check-installer.sh, each on a new machine. To be sourced. The packages are
# $current, $previous (an older version), $another (the same version with another file in it), and two that fail near
# the end, $failing and $failing_removal.
# shellcheck shell=bash disable=SC2154  # set by scripts/check-installer.sh

install_and_remove() {
    snapshot before
    expect_msi 0 /i "$current"
    expect_files
    expect_use "$version"
    run_wine 30 "$x64/shellhost.exe" menu 'C:\windows' >"$work/menu.txt" || fail "shellhost ended with $?"
    grep -q 'Orvane' "$work/menu.txt" || fail "shellhost shows: $(cat "$work/menu.txt")"
    run_wine 30 reg query "HKLM\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\{$product}" \
        /v DisplayVersion | grep -q "$version" || fail "the list of programs does not have $version"
    snapshot installed
    expect_msi 0 /i "$current"
    snapshot twice
    expect_same installed twice
    expect_msi 0 /x "{$product}"
    expect_no_files
    expect_no_use
    snapshot after
    expect_difference before after "$cases/left_behind.txt"
}

# What msiexec /f and /fa ask for; Wine does not know these.
repair_of_files_and_keys() {
    expect_msi 0 /i "$current"
    snapshot installed
    rm "$ORV_PREFIX/$installed/orvdialog.dll" "$ORV_PREFIX/$installed_32/orvshellext.dll"
    run_wine 30 reg delete 'HKCR\CLSID\{3C41A7E2-6B0D-4F93-9E25-7A1D0C6B2E48}\InprocServer32' /f >/dev/null
    run_wine 30 reg delete 'HKLM\Software\Classes\OrvaneRestoreType' /f >/dev/null
    expect_msi 0 /i "$current" REINSTALL=ALL REINSTALLMODE=omus
    expect_files
    expect_use "$version"
    snapshot repaired
    expect_same installed repaired
    hold_module
    expect_msi 3010 /i "$current" REINSTALL=ALL REINSTALLMODE=amus
    release_module
    expect_use "$version"
    restart_machine
    expect_files
    snapshot restarted
    expect_same installed restarted
}

upgrade() {
    expect_msi 0 /i "$previous"
    expect_use "$previous_version"
    expect_msi 0 /i "$current"
    expect_files
    expect_use "$version"
    snapshot upgraded
    new_machine
    expect_msi 0 /i "$current"
    snapshot installed
    expect_same installed upgraded
}

upgrade_while_the_module_is_used() {
    expect_msi 0 /i "$previous"
    hold_module
    expect_msi 3010 /i "$current"
    expect_use "$version"
    log_holds 'In use until the next start'
    release_module
    restart_machine
    expect_files
    expect_use "$version"
}

removal_while_the_module_is_used() {
    snapshot before
    expect_msi 0 /i "$current"
    hold_module
    expect_msi 3010 /x "{$product}"
    expect_no_use
    release_module
    restart_machine
    expect_no_files
    snapshot after
    expect_difference before after "$cases/left_behind.txt"
}

downgrade_is_refused() {
    expect_msi 0 /i "$current"
    snapshot installed
    expect_msi 1603 /i "$previous"
    snapshot refused
    expect_same installed refused
    expect_use "$version"
}

# Windows refuses the second with 1638 before it looks into it. Wine does not compare the codes of packages; the kit
# finds out on Windows. What it goes by is looked at here: one product, two packages.
another_build_of_the_version() {
    expect_msi 0 /i "$current"
    expect_msi 0 /i "$another"
    expect_files
    expect_use "$version"
    [ "$(product_of "$another")" = "$product" ] || fail "another build is another product"
    [ "$(package_of "$another")" != "$(package_of "$current")" ] || fail "another build is the same package"
    [ "$(product_of "$previous")" != "$product" ] || fail "another version is the same product"
}

failure_is_taken_back() {
    snapshot before
    expect_msi 1603 /i "$failing"
    log_holds 'Registering'
    log_holds 'Unregistering'
    expect_no_files
    expect_no_use
    snapshot after
    expect_difference before after "$cases/left_behind.txt"
}

# Wine writes the files anew instead of putting the former ones back, so those that were in use stay aside until the next
# start; nor does it bring its own list of products back.
failing_removal_leaves_the_product() {
    expect_msi 0 /i "$failing_removal"
    hold_module
    expect_msi 1603 /x "{$product}"
    release_module
    restart_machine
    expect_files
    expect_use "$version"
}

damaged_product_is_removed() {
    snapshot before
    expect_msi 0 /i "$current"
    rm "$ORV_PREFIX/$installed"/*.dll "$ORV_PREFIX/$installed_32"/orv*.dll
    expect_msi 0 /x "{$product}"
    expect_no_files
    snapshot after
    expect_difference before after "$cases/left_behind.txt"
}

# The kit for a Windows machine, unpacked and run as a person would: it reports every test, and none has failed.
kit_runs_whole() {
    local kit="$ORV_PREFIX/drive_c/kit" test
    unzip -q "$release"/*-windows-check.zip -d "$kit"
    kit=$(echo "$kit"/*)
    ! grep -qv $'\r$' "$kit/check.cmd" || fail "check.cmd has lines that end in another way than on Windows"
    (cd "$kit" && run_wine 500 cmd /c check.cmd) >"$work/kit.txt" || fail "check.cmd ended with $?"
    cp "$kit/report.txt" "$work/"
    for test in $(tr -d '\r' <"$kit/tests.txt" | cut -d' ' -f1) menu_without_registration module_registration_tests install \
        menu_by_registry folder_by_registry program_64 program_32 install_again remove nothing_left; do
        grep -q "^passed  $test" "$work/report.txt" || fail "the kit does not report $test as passed"
    done
    for test in $(tr -d '\r' <"$kit/left_out.txt" | cut -d' ' -f1) another_build; do
        grep -q "^skipped $test: " "$work/report.txt" || fail "the kit does not say why $test is skipped"
    done
    grep -q '^Windows: .*[0-9]\.[0-9]' "$work/report.txt" || fail "the report does not name the build of Windows"
    grep -q 'failed: 0' "$work/report.txt" || fail "the kit reports: $(cat "$work/report.txt")"
    grep -q 'The report is complete' "$work/report.txt" || fail "the kit's report is not complete"
}

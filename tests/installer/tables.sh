#!/usr/bin/env bash
# Reads the tables of the finished package: what the tool that makes it gets wrong, and what later versions depend on.
#
#   tables.sh MSI
set -euo pipefail
msi=$1
failures=0

fail() {
    printf 'FAILED: %s\n' "$*" >&2
    failures=$((failures + 1))
}

# The rows of a table, without its three lines of heading.
rows() { msiinfo export "$msi" "$1" | tr -d '\r' | tail -n +4; }

# expect_rows TITLE FOUND: they are the lines on standard input.
expect_rows() {
    local wanted
    wanted=$(cat)
    [ "$2" = "$wanted" ] || fail "$1: ('<' should, '>' should not)
$(diff <(printf '%s\n' "$wanted") <(printf '%s\n' "$2"))"
}

# The order in which things happen. The former version goes directly behind InstallInitialize; files go aside before
# any is removed or written; deferred actions stand before InstallFinalize.
expect_rows 'the sequence' "$(rows InstallExecuteSequence | sort -n -t$'\t' -k3 | awk -F'\t' '{ print $3, $1 ($2 == "" ? "" : ": " $2) }')" <<'END'
25 FindRelatedProducts
100 LaunchConditions
700 ValidateProductID
800 CostInitialize
900 FileCost
1000 CostFinalize
1200 MigrateFeatureStates
1400 InstallValidate
1410 SetShippedFiles
1420 SetProductFolders
1430 Prepare
1500 InstallInitialize
1510 RemoveExistingProducts
1600 ProcessComponents
1800 UnpublishFeatures
1900 FoldersUndone: NOT Installed AND NOT WIX_UPGRADE_DETECTED
1910 UnregisterUndone: REMOVE~="ALL"
1920 Unregister: REMOVE~="ALL"
1930 MoveAsideUndone
1940 MoveAside
1950 InstallExecute
3500 RemoveFiles
4000 InstallFiles
4020 PutBack: NOT REMOVE~="ALL"
4030 RegisterUndone: NOT Installed
4040 Register: NOT REMOVE~="ALL"
6000 RegisterUser
6100 RegisterProduct
6300 PublishFeatures
6400 PublishProduct
6500 DeleteOld
6510 LeaveNoFolder: REMOVE~="ALL" AND NOT UPGRADINGPRODUCTCODE
6600 InstallFinalize
6610 AskForRestart
END

# 1: a function of a library in the package, at once. 51: sets a property. In the script and as the system (no
# impersonation): 3073 deferred, 3329 when a later step fails, 3585 when all went well.
expect_rows 'the actions' "$(rows CustomAction | awk -F'\t' '{ print $1, $2, $3, $4 }' | grep -v '^Set' | sort)" <<'END'
AskForRestart 1 orvsetup AskForRestart
DeleteOld 3585 orvsetup DeleteOld
FoldersUndone 3329 orvsetup LeaveNoFolder
LeaveNoFolder 3585 orvsetup LeaveNoFolder
MoveAside 3073 orvsetup MoveAside
MoveAsideUndone 3329 orvsetup TakeBack
Prepare 1 orvsetup Prepare
PutBack 3073 orvsetup PutBack
Register 3073 orvsetup Register
RegisterUndone 3329 orvsetup Unregister
Unregister 3073 orvsetup Unregister
UnregisterUndone 3329 orvsetup Register
END
expect_rows 'the properties that actions set' "$(rows CustomAction | awk -F'\t' '/^Set/ { print $2, $3 }' | sort)" <<'END'
51 ProductFolders
51 ShippedFiles
END

# What may be in use is each library that is installed.
expect_rows 'ShippedFiles' "$(rows CustomAction | sed -n 's/^SetShippedFiles\t[^\t]*\t[^\t]*\t\([^\t]*\).*/\1/p' | tr '|' '\n' | sort)" <<END
$(join -t$'\t' -1 2 -2 1 <(rows File | sort -t$'\t' -k2,2) <(rows Component | sort -t$'\t' -k1,1) |
    awk -F'\t' '/dll/ { sub(/.*\|/, "", $3); print "[" $10 "]" $3 }' | sort)
END

# Ids of components are for ever: Windows counts by them who still needs a file. 256: in the 64-bit registry.
expect_rows 'the components' "$(rows Component | awk -F'\t' '{ print $1, $2, $3, $4, $6 }' | sort)" <<'END'
Dialogs {87F1CF4A-8D37-45E8-AC6D-B4A75A1EA9FA} INSTALLDIR 256 Dialogs
Dialogs32 {F2A1A58F-5EB0-4C4B-AC6A-6F5D5F0EC4D5} SystemFolder 0 Dialogs32
Module {6CF5D2C2-DAC3-4A6C-AEA2-07E7B03172D4} INSTALLDIR 256 Module
Module32 {2DEF2D5C-DBBE-41BB-8CDE-E5D7C5EC0AF2} SystemFolder 0 Module32
Notices {AF82D7F0-4E51-429B-B6E8-F8E2B80E8D64} INSTALLDIR 256 Notices
Texts {67EE38CC-C5AD-4083-883E-08B4D81B0C33} INSTALLDIR 256 Texts
Texts32 {29FF3CF8-7EA3-4C21-AF6D-C2D7B45F4ECD} SystemFolder 0 Texts32
END

# One file a component, each file once. A version makes Windows compare by it, and no hash may stand beside it.
version=$(rows Property | sed -n 's/^ProductVersion\t//p')
expect_rows 'the files' "$(rows File | awk -F'\t' '{ print $1, $2, $3, $5, $6 }' | sort)" <<END
Dialogs Dialogs ORVDIALO.DLL|orvdialog.dll $version.0 1033
Dialogs32 Dialogs32 ORVDIALO.DLL|orvdialog.dll $version.0 1033
Module Module ORVSHELL.DLL|orvshellext.dll $version.0 1033
Module32 Module32 ORVSHELL.DLL|orvshellext.dll $version.0 1033
Notices Notices NOTICES.txt  
Texts Texts orvres.dll $version.0 1033
Texts32 Texts32 orvres.dll $version.0 1033
END
expect_rows 'the hashes' "$(rows MsiFileHash | cut -f1)" <<<Notices
expect_rows 'the folders' "$(rows Directory | tr '\t' ' ' | sort)" <<'END'
INSTALLDIR VENDORDIR VAULTKEE|Vaultkeep
ProgramFiles64Folder TARGETDIR .
SystemFolder TARGETDIR .
TARGETDIR  SourceDir
VENDORDIR ProgramFiles64Folder Orvane
END

# Nothing of a user's: the installer may run as the system, which has no profile.
expect_rows 'the registry values' "$(rows Registry)" </dev/null

expect_rows 'the properties' "$(rows Property | grep -vE '^Product(Code|Version)' | tr '\t' ' ' | sort)" <<'END'
ALLUSERS 1
ARPNOMODIFY 1
MSIRESTARTMANAGERCONTROL Disable
Manufacturer Orvane, Inc.
ProductLanguage 1033
ProductName Orvane Vaultkeep Shell Extension
REBOOT ReallySuppress
SecureCustomProperties WIX_DOWNGRADE_DETECTED;WIX_UPGRADE_DETECTED
UpgradeCode {CCA264B4-A9AE-42A8-B5A9-00D19FEA4B73}
END
expect_rows 'the conditions' "$(rows LaunchCondition | tr '\t' ' ')" <<'END'
NOT WIX_DOWNGRADE_DETECTED A newer version of Orvane Vaultkeep Shell Extension is installed. Remove it first if this version is wanted.
VersionNT64 Orvane Vaultkeep Shell Extension needs a 64-bit version of Windows.
END
# 1 moves the choice of features to the new version; 2 only looks.
expect_rows 'upgrades' "$(rows Upgrade | tr '\t' ' ')" <<END
{CCA264B4-A9AE-42A8-B5A9-00D19FEA4B73}  $version  1  WIX_UPGRADE_DETECTED
{CCA264B4-A9AE-42A8-B5A9-00D19FEA4B73} $version   2  WIX_DOWNGRADE_DETECTED
END

# A 64-bit package for Windows Installer 5, which needs no extra file, and no questions of the user's rights.
expect_rows 'the summary' "$(msiinfo suminfo "$msi" | grep -E '^(Template|Version|Source)')" <<'END'
Template: x64;1033
Version: 500 (1f4)
Source: 2 (2)
END
# Each action is a function of the library in the package.
library=$(mktemp)
trap 'rm -f "$library"' EXIT
msiinfo extract "$msi" Binary.orvsetup >"$library"
expect_rows 'functions of orvsetup.dll' "$(x86_64-w64-mingw32-objdump -p "$library" |
    sed -n '/^\[Ordinal\/Name Pointer\] Table/,/^$/s/^[[:space:]]*\[ *[0-9]*\] //p' | sort)" <<END
$(rows CustomAction | awk -F'\t' '$3 == "orvsetup" { print $4 }' | sort -u)
END
[ "$failures" = 0 ] || exit 1
echo "passed: the package's tables"

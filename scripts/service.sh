#!/usr/bin/env bash
# The development service orvsvc.exe in a build's Wine prefix, as a Windows service of its own.
#
#   scripts/service.sh install   copies it into the prefix and registers it; an older copy is replaced
#   scripts/service.sh start     starts it, installing it and starting the driver first where need be
#   scripts/service.sh stop      stops it; what it protects stays remembered
#   scripts/service.sh remove    stops and unregisters it and deletes the copy; its state and copies stay
#   scripts/service.sh status    prints "running", "stopped" or "absent"
#
# Each command is content when there is nothing to do. ORV_PRESET names the build (x64-release). State, copies
# and log are in the prefix, in drive_c/ProgramData/Orvane/devservice.
. "$(dirname "$0")/managed.sh"

managed_name=orvsvc
managed_word=service
built="$ORV_ROOT/build/$ORV_PRESET/bin/orvsvc.exe"
installed="$(prefix_dir)/drive_c/Program Files/Orvane/orvsvc.exe"
create_arguments=(start= demand depend= orvdrv binPath= '"C:\Program Files\Orvane\orvsvc.exe" service')

before_start() { "$ORV_ROOT/scripts/driver.sh" start; }
log_hint() { say "Its log, $(prefix_dir)/drive_c/ProgramData/Orvane/devservice/orvsvc.log, may say why."; }

run_command "${1:-}"

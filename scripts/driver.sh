#!/usr/bin/env bash
# The development driver orvdrv.sys in a build's Wine prefix.
#
#   scripts/driver.sh install   copies it into the prefix and registers it; an older copy is replaced
#   scripts/driver.sh start     starts it, installing it first when it is not there or not the built one
#   scripts/driver.sh stop      stops it; clients that have it open see it gone
#   scripts/driver.sh remove    stops and unregisters it and deletes the copy
#   scripts/driver.sh status    prints "running", "stopped" or "absent"
#
# Each command is content when there is nothing to do. ORV_PRESET names the build (x64-release).
. "$(dirname "$0")/managed.sh"

managed_name=orvdrv
managed_word=driver
built="$ORV_ROOT/build/$ORV_PRESET/bin/orvdrv.sys"
installed="$(prefix_dir)/drive_c/windows/system32/drivers/orvdrv.sys"
# The path inside the prefix has no spaces, wherever the project lies.
create_arguments=(type= kernel start= demand binPath= 'C:\windows\system32\drivers\orvdrv.sys')

run_command "${1:-}"

#!/usr/bin/env bash
# check_includes.sh ARROWS: fails when a file includes a header of a room that its targets do not link.
set -euo pipefail
here=$(cd "$(dirname "$0")" && pwd)
cd "$here/../.."
arrows=$1

# tests/fuzz/native links nothing: scripts/fuzz.sh names each file.
grep -rE --exclude-dir=build --exclude-dir=native --include='*.cpp' --include='*.h' --include='*.c' '^#include "[^"]*/' -- * |
    awk -f "$here/includes.awk" "$arrows" -

# Each of these goes against an arrow of docs/architecture.md, whatever the link lists say.
while read -r from to; do
    if printf '%s:#include "%s"\n' "$from" "$to" | awk -f "$here/includes.awk" "$arrows" - >/dev/null; then
        echo "$from may include $to: the link lists, or this check, let an arrow point the wrong way" >&2
        exit 1
    fi
done <<'PLANTED'
ovufc/json_bounded.cpp service/envelope.h
service/calls.cpp shell/message_boxes.h
shell/file_menu/menu_icon.cpp namespace/items/item_id.h
namespace/items/item_id.cpp module/class_object.h
module/state/module_state.cpp module/registration/registrar.h
shell/file_menu/menu_icon.cpp testkit/files/temp_file.h
companions/devservice/store/vault.cpp service/envelope.h
PLANTED

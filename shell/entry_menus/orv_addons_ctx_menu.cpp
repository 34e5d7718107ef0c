#include "shell/entry_menus/orv_addons_ctx_menu.h"

#include <cstdint>
#include <optional>
#include <string>

#include "ovufc/i18n/message_ids.h"
#include "ovufc/time/datetime.h"
#include "service/calls.h"
#include "shell/message_boxes.h"

namespace ov::shell {

namespace {

namespace ids = i18n::message_ids;
using module_state::resource_strings;

void show_last_timestamp() {
    const std::optional<std::uint64_t> timestamp = service::get_last_timestamp();
    if (!timestamp) {
        show_failure();
        return;
    }
    // A timestamp of 0 means no time: the date in the message is then empty.
    const std::wstring when = time::datetime_rfc1123(*timestamp).display(/*local=*/true, /*longDate=*/true);
    show_box(resource_strings.format(ids::addons_result, when.c_str()), box_style::result);
}

}  // namespace

const wchar_t* OrvAddonsCtxMenu::verb_text() const noexcept {
    return L"Open";
}

void OrvAddonsCtxMenu::run() {
    if (!confirmed(resource_strings.lookup(ids::ask_addons))) {
        return;
    }
    try {
        show_last_timestamp();
    } catch (...) {
        show_failure();
    }
}

}  // namespace ov::shell

#include "shell/entry_menus/orv_restore_ctx_menu.h"

#include <cstdint>
#include <string>

#include "ovufc/i18n/message_ids.h"
#include "ovufc/noncopyable.h"
#include "ovufc/time/datetime.h"
#include "service/calls.h"
#include "shell/entry_menus/elevation.h"
#include "shell/message_boxes.h"

namespace ov::shell {

namespace {

namespace ids = i18n::message_ids;
using module_state::resource_strings;
using module_state::restoreInProgress;

/// For the length of a scope, marks that this process runs a restore; fails if another one runs.
class restore_turn : private noncopyable {
  public:
    restore_turn() noexcept {
        std::int32_t idle = 0;
        taken_ = restoreInProgress.compare_exchange_strong(idle, 1);
    }
    ~restore_turn() {
        if (taken_) {
            std::int32_t running = 1;
            restoreInProgress.compare_exchange_strong(running, 0);
        }
    }
    [[nodiscard]] bool taken() const noexcept { return taken_; }

  private:
    bool taken_ = false;
};

bool confirmed_twice(std::int64_t createdOn) {
    const std::wstring when = time::datetime_rfc1123(static_cast<std::uint64_t>(createdOn))
                                  .display(/*local=*/true, /*longDate=*/true);
    return confirmed(resource_strings.format(ids::ask_restore, when.c_str())) &&
           confirmed(resource_strings.format(ids::ask_restore_again, when.c_str()));
}

void restore_first_point() {
    std::int64_t createdOn = 0;
    std::int64_t sequenceNumber = 0;
    if (!service::get_restore_points(createdOn, sequenceNumber)) {
        show_failure();
        return;
    }
    if (!confirmed_twice(createdOn)) {
        return;
    }
    // The list is asked for and not used; kept on purpose. The driver reports the outcome of the restore.
    (void)service::get_restore_folders(createdOn, sequenceNumber);
    (void)service::restore_from_point(createdOn, sequenceNumber);
}

}  // namespace

const wchar_t* OrvRestoreCtxMenu::verb_text() const noexcept {
    return L"Restore";
}

void OrvRestoreCtxMenu::run() {
    // Declared first, so that it is released after the turn is over: releasing calls into another process.
    Microsoft::WRL::ComPtr<IFileOperation> consent;
    const restore_turn turn;
    if (!turn.taken()) {
        return;
    }
    consent = ask_for_elevation();
    if (consent == nullptr) {
        return;
    }
    try {
        restore_first_point();
    } catch (...) {
        show_failure();
    }
}

}  // namespace ov::shell

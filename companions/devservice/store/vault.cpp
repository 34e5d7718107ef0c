#include "companions/devservice/store/vault.h"

#include <utility>

#include "companions/devservice/copies/retention.h"
#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/time_text.h"
#include "companions/devservice/store/state_lock.h"

namespace ov::devservice {

vault::vault(std::wstring folder)
    : folder_(std::move(folder)), file_(folder_), objects_(joined(folder_, L"objects")) {}

DWORD vault::reload() {
    service_state loaded;
    const DWORD error = file_.load(loaded);
    if (error == ERROR_SUCCESS) {
        state_ = std::move(loaded);
    }
    return error;
}

DWORD vault::change(const std::function<DWORD(service_state&)>& change) {
    const state_lock lock(folder_);
    if (!lock.held()) {
        return ERROR_LOCK_VIOLATION;
    }
    service_state working;
    DWORD error = file_.load(working);
    const std::int64_t next_copy = working.next_copy;
    if (error == ERROR_SUCCESS) {
        error = change(working);
    }
    const bool copy_added = working.next_copy != next_copy;
    if (error == ERROR_SUCCESS && copy_added) {
        let_older_copies_go(working);
    }
    if (error == ERROR_SUCCESS) {
        error = file_.save(working);
    }
    if (error != ERROR_SUCCESS) {
        return error;
    }
    state_ = std::move(working);
    if (copy_added) {
        // Not before: the state in the file says what is needed.
        objects_.keep_only(needed_objects(state_));
    }
    return ERROR_SUCCESS;
}

std::wstring vault::aside_folder(std::int64_t number) const {
    const std::wstring name = file_name_time(now_as_file_time()) + L" point " + std::to_wstring(number);
    return free_name(joined(joined(folder_, L"aside"), name));
}

std::wstring vault::document_path() const {
    return joined(folder_, L"document.json");
}

}  // namespace ov::devservice

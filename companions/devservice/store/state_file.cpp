#include "companions/devservice/store/state_file.h"

#include <optional>

#include "companions/devservice/files/file_io.h"
#include "companions/devservice/store/state_json.h"

namespace ov::devservice {
namespace {

/// Where a fresh state starts to count: clients keep the document of a generation that they have seen, so a
/// state that was removed and made anew must not repeat the numbers of the old one. Seconds do.
std::uint32_t first_generation() noexcept {
    constexpr std::int64_t ticks_in_second = 10'000'000;
    const auto seconds = static_cast<std::uint32_t>(now_as_file_time() / ticks_in_second);
    return seconds == 0 ? 1 : seconds;
}

}  // namespace

state_file::state_file(const std::wstring& folder, std::uint64_t limit_bytes)
    : folder_(folder), path_(joined(folder, L"state.json")), limit_bytes_(limit_bytes) {}

DWORD state_file::load(service_state& state) const {
    std::string text;
    const DWORD error = read_whole_file(path_, limit_bytes_, text);
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
        state = service_state();
        state.generation = first_generation();
        return ERROR_SUCCESS;
    }
    if (error != ERROR_SUCCESS) {
        return error;
    }
    std::optional<service_state> loaded = state_from_text(text);
    if (!loaded) {
        return ERROR_FILE_CORRUPT;
    }
    state = *std::move(loaded);
    return ERROR_SUCCESS;
}

DWORD state_file::save(service_state& state) const {
    if (const DWORD error = make_folders(folder_); error != ERROR_SUCCESS) {
        return error;
    }
    ++state.revision;
    const std::optional<std::string> text = state_to_text(state);
    if (!text) {
        return ERROR_INVALID_NAME;
    }
    if (text->size() > limit_bytes_) {
        return ERROR_FILE_TOO_LARGE;
    }
    const std::wstring beside = path_ + L".new";
    static_cast<void>(remove_file(beside));  // of a save that was interrupted
    if (const DWORD error = write_new_file(beside, *text); error != ERROR_SUCCESS) {
        return error;
    }
    const DWORD error = replace_file(beside, path_, own_file_patience_ms);
    if (error != ERROR_SUCCESS) {
        static_cast<void>(remove_file(beside));
    }
    return error;
}

}  // namespace ov::devservice

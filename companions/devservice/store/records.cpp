#include "companions/devservice/store/records.h"

#include <algorithm>

#include "companions/devservice/files/text.h"

namespace ov::devservice {
namespace {

constexpr std::wstring_view profiles_folder = L"C:\\Users";

bool any_holds(const std::vector<std::wstring>& folders, const std::wstring& path) {
    return std::any_of(folders.begin(), folders.end(),
                       [&](const std::wstring& folder) { return is_within(path, folder); });
}

}  // namespace

bool is_recordable(std::wstring_view relative) {
    return is_safe_relative(relative) && to_utf8(relative).has_value();
}

const char* words_for(copy_kind kind) noexcept {
    switch (kind) {
        case copy_kind::first:
            return "first copy";
        case copy_kind::restore_point:
        case copy_kind::past_point:
            return "restore point";
        default:
            return "before a restore";
    }
}

std::int64_t now_as_file_time() noexcept {
    FILETIME now{};
    GetSystemTimeAsFileTime(&now);
    return static_cast<std::int64_t>(ULARGE_INTEGER{{now.dwLowDateTime, now.dwHighDateTime}}.QuadPart);
}

void document_changed(service_state& state) noexcept {
    ++state.generation;
    if (state.generation == 0) {
        ++state.generation;
    }
}

const protected_folder* protection_of(const service_state& state, const std::wstring& path) {
    const auto found =
        std::find_if(state.folders.begin(), state.folders.end(),
                     [&](const protected_folder& folder) { return is_within(path, folder.path); });
    return found == state.folders.end() ? nullptr : &*found;
}

const std::wstring* rule_of(const service_state& state, const std::wstring& path) {
    if (!is_within(path, profiles_folder)) {
        return nullptr;
    }
    const std::wstring below = relative_to(path, profiles_folder);
    const std::size_t end_of_name = below.find(L'\\');
    if (end_of_name == std::wstring::npos) {
        return nullptr;
    }
    const std::wstring in_profile = below.substr(end_of_name + 1);
    const auto found = std::find_if(state.rules.begin(), state.rules.end(),
                                    [&](const std::wstring& rule) { return is_within(in_profile, rule); });
    return found == state.rules.end() ? nullptr : &*found;
}

bool counts_as_protected(const service_state& state, const std::wstring& path) {
    return protection_of(state, path) != nullptr || rule_of(state, path) != nullptr ||
           any_holds(state.managed, path) ||
           std::any_of(state.cloud.begin(), state.cloud.end(),
                       [&](const std::vector<std::wstring>& folders) { return any_holds(folders, path); });
}

}  // namespace ov::devservice

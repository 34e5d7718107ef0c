#include "companions/devservice/copies/chronels.h"

#include <algorithm>
#include <charconv>

#include "companions/devservice/copies/take_copy.h"
#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/json_text.h"
#include "companions/devservice/files/links.h"
#include "companions/devservice/files/text.h"
#include "companions/devservice/roll_back/restored_file.h"
#include "ovufc/protocol/service_calls.h"

namespace ov::devservice {
namespace {

const file_record* record_of(const stored_copy& copy, const std::wstring& path) {
    for (const folder_copy& folder : copy.folders) {
        if (!is_within(path, folder.folder)) {
            continue;
        }
        const std::wstring relative = relative_to(path, folder.folder);
        const auto found = std::find_if(
            folder.records.begin(), folder.records.end(),
            [&](const file_record& record) { return record.kept() && same_path(record.relative, relative); });
        if (found != folder.records.end()) {
            return &*found;
        }
    }
    return nullptr;
}

/// Keeps the file as it is now as a chronel; nothing to do when there is none.
DWORD keep_present(vault& vault, service_state& state, const std::wstring& folder, const std::wstring& path,
                   const file_record& like) {
    object_store::object taken;
    const DWORD error = vault.objects().put(path, taken);
    if (error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND) {
        return ERROR_SUCCESS;
    }
    if (error == ERROR_SUCCESS) {
        stored_copy& copy = add_copy(state, copy_kind::before_restore);
        file_record record = like;
        record.relative = relative_to(path, folder);
        record.digest = taken.digest;
        record.size_bytes = taken.size_bytes;
        record.written = copy.taken_on;
        copy.folders.push_back({.folder = folder, .records = {std::move(record)}, .unlisted = {}});
    }
    return error;
}

std::wstring extension_of(const std::wstring& name) {
    const std::size_t dot = name.find_last_of(L'.');
    return dot == std::wstring::npos ? std::wstring() : name.substr(dot);
}

std::wstring name_for_opening(const std::wstring& own_name, const std::wstring& wanted_name) {
    constexpr std::size_t name_limit_chars = 200;
    const std::wstring wanted = base_name(wanted_name);
    const bool usable = wanted.size() <= name_limit_chars && is_safe_relative(wanted) &&
                        same_path(extension_of(wanted), extension_of(own_name));
    return usable ? wanted : own_name;
}

}  // namespace

std::vector<chronel> chronels_of(const service_state& state, const std::wstring& path) {
    std::vector<chronel> found;
    for (auto copy = state.copies.rbegin(); copy != state.copies.rend(); ++copy) {
        const file_record* record = record_of(*copy, path);
        if (record != nullptr && (found.empty() || found.back().record->digest != record->digest)) {
            found.push_back({&*copy, record});
        }
    }
    return found;
}

std::string chronel_list_text(const std::vector<chronel>& chronels) {
    json list = json::array();
    for (const chronel& version : chronels) {
        list.push_back({{protocol::fields::file_name, to_utf8_lossy(base_name(version.record->relative))},
                        {protocol::fields::clone_file_name, std::to_string(version.copy->number)},
                        {protocol::fields::type, words_for(version.copy->kind)},
                        {protocol::fields::created_on, version.copy->taken_on},
                        {"writtenOn", version.record->written},
                        {"size", version.record->size_bytes}});
    }
    return to_text(list);
}

chronel find_chronel(const service_state& state, const std::wstring& path, std::string_view clone_file_name) {
    std::int64_t number = 0;
    const char* end = clone_file_name.data() + clone_file_name.size();
    const auto [read_to, error] = std::from_chars(clone_file_name.data(), end, number);
    if (error != std::errc() || read_to != end) {
        return {};
    }
    const auto copy = std::find_if(state.copies.begin(), state.copies.end(),
                                   [&](const stored_copy& candidate) { return candidate.number == number; });
    if (copy == state.copies.end()) {
        return {};
    }
    return {&*copy, record_of(*copy, path)};
}

DWORD restore_chronel(vault& vault, const std::wstring& path, const std::string& clone_file_name) {
    return vault.change([&](service_state& state) -> DWORD {
        const protected_folder* folder = protection_of(state, path);
        if (folder == nullptr || leads_through_link(path)) {
            return ERROR_ACCESS_DENIED;
        }
        const chronel version = find_chronel(state, path, clone_file_name);
        if (version.record == nullptr) {
            return ERROR_NOT_FOUND;
        }
        // Keeping the present file adds a copy, which may move the others in memory.
        const file_record record = *version.record;
        const std::int64_t number = version.copy->number;
        DWORD error = keep_present(vault, state, folder->path, path, record);
        if (error == ERROR_SUCCESS) {
            error = make_folders(parent_of(path));
        }
        if (error == ERROR_SUCCESS) {
            error = replace_with_recorded(vault.objects(), record, path,
                                          joined(vault.aside_folder(number), base_name(path)));
        }
        return error;
    });
}

DWORD write_chronel_for_opening(const vault& vault, const std::wstring& path,
                                const std::string& clone_file_name, const std::wstring& wanted_name,
                                const std::wstring& parent, std::wstring& opened) {
    if (protection_of(vault.state(), path) == nullptr) {
        return ERROR_ACCESS_DENIED;
    }
    const chronel version = find_chronel(vault.state(), path, clone_file_name);
    if (version.record == nullptr) {
        return ERROR_NOT_FOUND;
    }
    const std::wstring folder =
        free_name(joined(parent, L"Orvane chronel " + std::to_wstring(version.copy->number)));
    if (const DWORD error = make_folders(folder); error != ERROR_SUCCESS) {
        return error;
    }
    const std::wstring file =
        joined(folder, name_for_opening(base_name(version.record->relative), wanted_name));
    const DWORD error = write_recorded(vault.objects(), *version.record, file);
    if (error == ERROR_SUCCESS) {
        opened = file;
    }
    return error;
}

}  // namespace ov::devservice

#include "companions/devservice/roll_back/exports.h"

#include <functional>
#include <map>
#include <set>
#include <utility>

#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/time_text.h"
#include "companions/devservice/roll_back/restored_file.h"

namespace ov::devservice {
namespace {

using visitor = std::function<void(const stored_copy&, const file_record&, const std::wstring& path)>;

/// Every recorded file below `folder`, the newest copy first.
void for_each_record(const service_state& state, const std::wstring& folder, const visitor& visit) {
    for (auto copy = state.copies.rbegin(); copy != state.copies.rend(); ++copy) {
        for (const folder_copy& taken : copy->folders) {
            for (const file_record& record : taken.records) {
                const std::wstring path = joined(taken.folder, record.relative);
                if (record.kept() && is_within(path, folder)) {
                    visit(*copy, record, path);
                }
            }
        }
    }
}

std::wstring dated_folder(const std::wstring& desktop, const wchar_t* what, const std::wstring& folder) {
    const std::wstring name =
        std::wstring(what) + base_name(folder) + L" " + file_name_time(now_as_file_time());
    return free_name(joined(desktop, name));
}

std::wstring with_time(const std::wstring& relative, std::int64_t time) {
    const std::wstring name = base_name(relative);
    const std::size_t dot = name.find_last_of(L'.');
    const std::wstring stem = name.substr(0, dot);
    const std::wstring extension = dot == std::wstring::npos ? std::wstring() : name.substr(dot);
    return joined(parent_of(relative), stem + L" (" + file_name_time(time) + L")" + extension);
}

void write_into(const vault& vault, const file_record& record, const std::wstring& folder,
                const std::wstring& relative, export_result& result) {
    const std::wstring file = free_name(joined(folder, relative));
    DWORD error = make_folders(parent_of(file));
    if (error == ERROR_SUCCESS) {
        error = write_recorded(vault.objects(), record, file);
    }
    if (error != ERROR_SUCCESS) {
        result.failed.push_back({file, error});
        return;
    }
    result.folder = folder;
    ++result.files;
}

/// SHA-256 of what stands at `path` now; empty when nothing that can be read does.
std::string present_digest(const std::wstring& path) {
    std::string digest;
    return hash_file(path, digest) == ERROR_SUCCESS ? digest : std::string();
}

}  // namespace

export_result export_deleted_files(const vault& vault, const std::wstring& folder,
                                   const std::wstring& desktop) {
    export_result result;
    const std::wstring target = dated_folder(desktop, L"Orvane deleted files of ", folder);
    std::set<std::wstring, path_less> seen;
    for_each_record(vault.state(), folder,
                    [&](const stored_copy&, const file_record& record, const std::wstring& path) {
                        const bool newest = seen.insert(path).second;
                        if (newest && attributes_of(path) == INVALID_FILE_ATTRIBUTES) {
                            write_into(vault, record, target, relative_to(path, folder), result);
                        }
                    });
    return result;
}

export_result export_chronels(const vault& vault, const std::wstring& folder, const std::wstring& desktop) {
    export_result result;
    const std::wstring target = dated_folder(desktop, L"Orvane chronels of ", folder);
    // The contents of each path that need no writing: the present one, and those written already.
    std::map<std::wstring, std::set<std::string>, path_less> known;
    for_each_record(vault.state(), folder,
                    [&](const stored_copy& copy, const file_record& record, const std::wstring& path) {
                        auto place = known.find(path);
                        if (place == known.end()) {
                            place = known.emplace(path, std::set<std::string>{present_digest(path)}).first;
                        }
                        if (place->second.insert(record.digest).second) {
                            const std::wstring relative = relative_to(path, folder);
                            write_into(vault, record, target, with_time(relative, copy.taken_on), result);
                        }
                    });
    return result;
}

}  // namespace ov::devservice

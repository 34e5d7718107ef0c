#include "companions/devservice/roll_back/roll_back.h"

#include <algorithm>
#include <map>

#include "companions/devservice/copies/folder_walk.h"
#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/links.h"
#include "companions/devservice/roll_back/restored_file.h"

namespace ov::devservice {
namespace {

using record_map = std::map<std::wstring_view, const file_record*, path_less>;

/// One folder on its way back; `records` names what belongs there.
struct folder_job {
    const vault& vault;
    const folder_copy& copy;
    const std::wstring& aside;
    roll_back_result& result;
    record_map records;

    void note(const std::wstring& relative, DWORD error) {
        if (error != ERROR_SUCCESS) {
            result.failed.push_back({joined(copy.folder, relative), error});
        }
    }

    const file_record* recorded(std::wstring_view relative) const {
        const auto found = records.find(relative);
        return found == records.end() ? nullptr : found->second;
    }

    /// Whether the copy looked into the folder; it does not look through a link, whatever stands there now.
    bool looked_into(const std::wstring& relative) const {
        const file_record* record = recorded(relative);
        return (record == nullptr || record->kind != entry_kind::link) &&
               std::none_of(copy.unlisted.begin(), copy.unlisted.end(),
                            [&](const std::wstring& unlisted) { return same_path(unlisted, relative); });
    }

    /// For what has no record: whether the copy would have one, had it been there.
    bool appeared_since(const std::wstring& relative) const {
        if (!is_recordable(relative)) {
            return false;
        }
        std::wstring folder = relative;
        while (!folder.empty()) {
            folder = parent_of(folder);
            if (!looked_into(folder)) {
                return false;
            }
        }
        return true;
    }

    void move_aside(const std::wstring& relative) {
        const std::wstring target = joined(aside, relative);
        DWORD error = make_folders(parent_of(target));
        if (error == ERROR_SUCCESS) {
            error = move_file(joined(copy.folder, relative), target);
        }
        note(relative, error);
        result.moved_aside += error == ERROR_SUCCESS ? 1 : 0;
    }

    /// What stands in the place of a recorded file or folder and is neither.
    void clear_the_way(const found_entry& entry) {
        if (is_always_followed(joined(copy.folder, entry.relative))) {
            note(entry.relative, ERROR_CANT_ACCESS_FILE);  // moving it would move what it leads to
        } else {
            move_aside(entry.relative);
        }
    }

    void clear_what_appeared(const std::vector<found_entry>& found) {
        for (const found_entry& entry : found) {
            const file_record* record = recorded(entry.relative);
            if (record == nullptr) {
                if (entry.kind == entry_kind::file && appeared_since(entry.relative) &&
                    !is_link(joined(copy.folder, entry.relative))) {
                    move_aside(entry.relative);
                }
            } else if (is_in_the_way(entry, *record)) {
                clear_the_way(entry);
            }
        }
    }

    static bool is_in_the_way(const found_entry& entry, const file_record& record) {
        return record.folder() ? entry.kind != entry_kind::folder
                               : record.kept() && entry.kind == entry_kind::link;
    }

    /// Folders that were not there: their files have been moved, so they are empty unless one of them could
    /// not be, or must not be; then they stay, which is a failure only where they are in the way.
    void remove_folders_that_appeared(const std::vector<found_entry>& found) {
        // Each folder comes after the one that holds it: from the back, the inner ones go first.
        for (auto entry = found.rbegin(); entry != found.rend(); ++entry) {
            if (entry->kind != entry_kind::folder) {
                continue;
            }
            const file_record* record = recorded(entry->relative);
            if (record == nullptr ? appeared_since(entry->relative) : record->kept()) {
                remove_folder(entry->relative, record != nullptr);
            }
        }
    }

    void remove_folder(const std::wstring& relative, bool in_the_way) {
        const std::wstring path = joined(copy.folder, relative);
        DWORD error = make_folders(joined(aside, relative));
        if (error == ERROR_SUCCESS && !RemoveDirectoryW(long_form(path).c_str())) {
            error = GetLastError();
        }
        if (error != ERROR_DIR_NOT_EMPTY || in_the_way) {
            note(relative, error);
        }
    }

    void restore_folder(const file_record& record) {
        const std::wstring path = joined(copy.folder, record.relative);
        note(record.relative, leads_through_link(path) ? DWORD{ERROR_CANT_ACCESS_FILE} : make_folders(path));
    }

    void restore_file(const file_record& record) {
        const std::wstring path = joined(copy.folder, record.relative);
        std::string digest;
        const DWORD read_error = leads_through_link(path) ? ERROR_CANT_ACCESS_FILE : hash_file(path, digest);
        if (read_error == ERROR_SUCCESS && digest == record.digest) {
            ++result.untouched;
            return;
        }
        const bool existed = attributes_of(path) != INVALID_FILE_ATTRIBUTES;
        const DWORD error =
            replace_with_recorded(vault.objects(), record, path, joined(aside, record.relative));
        note(record.relative, error);
        if (error == ERROR_SUCCESS) {
            ++result.restored;
            result.moved_aside += existed ? 1 : 0;
        }
    }

    /// A file that was seen and not kept: nothing can be done, but whether it is as it was is said.
    void look_at_file(const file_record& record) {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        const std::wstring path = long_form(joined(copy.folder, record.relative));
        const bool there = GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data);
        const ULARGE_INTEGER size{{data.nFileSizeLow, data.nFileSizeHigh}};
        const ULARGE_INTEGER written{
            {data.ftLastWriteTime.dwLowDateTime, data.ftLastWriteTime.dwHighDateTime}};
        const bool same = there && size.QuadPart == record.size_bytes &&
                          static_cast<std::int64_t>(written.QuadPart) == record.written;
        note(record.relative, same ? ERROR_SUCCESS : ERROR_NOT_FOUND);
    }

    void run() {
        for (const file_record& record : copy.records) {
            records.emplace(record.relative, &record);
        }
        problems unlisted;
        const std::vector<found_entry> found = walk_folder(copy.folder, vault.folder(), unlisted);
        for (const problem& one : unlisted) {
            note(one.path, one.error);
        }
        clear_what_appeared(found);
        remove_folders_that_appeared(found);
        for (const file_record& record : copy.records) {
            if (record.folder()) {
                restore_folder(record);
            }
        }
        for (const file_record& record : copy.records) {
            if (record.kept()) {
                restore_file(record);
            } else if (record.kind == entry_kind::file) {
                look_at_file(record);
            }
        }
    }
};

}  // namespace

void roll_back_folder(const vault& vault, const folder_copy& copy, const std::wstring& aside,
                      roll_back_result& result) {
    // A link may stand in the place of the folder now, or of one on the way to it.
    const DWORD error =
        leads_through_link(copy.folder) ? DWORD{ERROR_CANT_ACCESS_FILE} : make_folders(copy.folder);
    if (error != ERROR_SUCCESS) {
        result.failed.push_back({copy.folder, error});
        return;
    }
    folder_job{vault, copy, aside, result, {}}.run();
}

std::vector<std::wstring> restorable_folders(const service_state& state, const stored_copy& point) {
    std::vector<std::wstring> folders;
    for (const folder_copy& copy : point.folders) {
        if (protection_of(state, copy.folder) != nullptr) {
            folders.push_back(copy.folder);
        }
    }
    return folders;
}

const stored_copy* find_restore_point(const service_state& state, std::int64_t created_on,
                                      std::int64_t sequence_number) {
    const auto found = std::find_if(state.copies.begin(), state.copies.end(), [&](const stored_copy& copy) {
        return copy.kind == copy_kind::restore_point && copy.taken_on == created_on &&
               copy.number == sequence_number;
    });
    return found == state.copies.end() ? nullptr : &*found;
}

roll_back_result roll_back(const vault& vault, const service_state& state, const stored_copy& point) {
    roll_back_result result;
    result.aside = vault.aside_folder(point.number);
    int folder_number = 0;
    for (const folder_copy& copy : point.folders) {
        ++folder_number;
        if (protection_of(state, copy.folder) != nullptr) {
            const std::wstring name = std::to_wstring(folder_number) + L" " + base_name(copy.folder);
            roll_back_folder(vault, copy, joined(result.aside, name), result);
        }
    }
    return result;
}

}  // namespace ov::devservice

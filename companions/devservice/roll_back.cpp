#include "companions/devservice/roll_back.h"

#include <algorithm>
#include <map>

#include "companions/devservice/file_io.h"
#include "companions/devservice/folder_walk.h"
#include "companions/devservice/restored_file.h"

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

    void move_aside(const std::wstring& relative) {
        const std::wstring target = joined(aside, relative);
        DWORD error = make_folders(parent_of(target));
        if (error == ERROR_SUCCESS) {
            error = move_file(joined(copy.folder, relative), target);
        }
        note(relative, error);
        result.moved_aside += error == ERROR_SUCCESS ? 1 : 0;
    }

    /// A folder that was not there: its files have been moved, so it is empty unless one of them could not
    /// be, or a link is in it; then it stays, and is no failure of its own unless it is in the way.
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

    const file_record* recorded(const std::wstring& relative) const {
        const auto found = records.find(relative);
        return found == records.end() ? nullptr : found->second;
    }

    void clear_what_appeared() {
        const std::vector<found_entry> found = walk_folder(copy.folder, vault.folder(), result.failed);
        for (const found_entry& entry : found) {
            const file_record* record = recorded(entry.relative);
            const bool appeared = record == nullptr ? entry.kind == entry_kind::file
                                                    : (entry.kind == entry_kind::link ||
                                                       (entry.kind == entry_kind::file && record->folder));
            if (appeared) {
                move_aside(entry.relative);
            }
        }
        // Each folder comes after the one that holds it: from the back, the inner ones go first.
        for (auto entry = found.rbegin(); entry != found.rend(); ++entry) {
            const file_record* record = recorded(entry->relative);
            if (entry->kind == entry_kind::folder && (record == nullptr || !record->folder)) {
                remove_folder(entry->relative, record != nullptr);
            }
        }
    }

    void restore_file(const file_record& record) {
        const std::wstring path = joined(copy.folder, record.relative);
        std::string digest;
        const DWORD read_error = hash_file(path, digest);
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

    void run() {
        for (const file_record& record : copy.records) {
            records.emplace(record.relative, &record);
        }
        clear_what_appeared();
        for (const file_record& record : copy.records) {
            if (record.folder) {
                note(record.relative, make_folders(joined(copy.folder, record.relative)));
            }
        }
        for (const file_record& record : copy.records) {
            if (!record.folder) {
                restore_file(record);
            }
        }
    }
};

}  // namespace

void roll_back_folder(const vault& vault, const folder_copy& copy, const std::wstring& aside,
                      roll_back_result& result) {
    DWORD error = make_folders(copy.folder);
    if (error == ERROR_SUCCESS && !is_plain_folder(copy.folder)) {
        error = ERROR_CANT_ACCESS_FILE;  // a link now stands in the folder's place
    }
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

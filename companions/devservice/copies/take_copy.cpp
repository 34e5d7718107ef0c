#include "companions/devservice/copies/take_copy.h"

#include <algorithm>
#include <utility>

#include "companions/devservice/copies/folder_walk.h"
#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/links.h"
#include "companions/devservice/files/text.h"

namespace ov::devservice {
namespace {

/// Takes in a file's content; on an error its record says that it was seen and no more.
DWORD copy_file(vault& vault, const std::wstring& path, file_record& record) {
    object_store::object taken;
    const DWORD error = vault.objects().put(path, taken);
    if (error == ERROR_SUCCESS) {
        record.digest = std::move(taken.digest);
        record.size_bytes = taken.size_bytes;
    } else if (is_link(path)) {
        record.kind = entry_kind::link;
        return ERROR_SUCCESS;
    }
    return error;
}

void copy_entry(vault& vault, const found_entry& entry, folder_copy& copy, problems& left_out) {
    const std::wstring path = joined(copy.folder, entry.relative);
    if (!is_recordable(entry.relative)) {
        if (entry.kind != entry_kind::link) {
            left_out.push_back({path, ERROR_INVALID_NAME});
        }
        return;
    }
    file_record record{.relative = entry.relative, .kind = entry.kind, .digest = {}};
    record.size_bytes = entry.size_bytes;
    record.written = entry.written;
    record.attributes = entry.attributes;
    if (entry.kind == entry_kind::file) {
        if (const DWORD error = copy_file(vault, path, record); error != ERROR_SUCCESS) {
            left_out.push_back({path, error});
        }
    }
    copy.records.push_back(std::move(record));
}

DWORD check_may_protect(const vault& vault, const std::wstring& path) {
    if (!is_plain_folder(path) || leads_through_link(path)) {
        return ERROR_PATH_NOT_FOUND;
    }
    if (!to_utf8(path)) {
        return ERROR_INVALID_NAME;
    }
    // Copies into the service's own folder would be copied, and rolled back, themselves.
    const bool around_ours = is_within(vault.folder(), path) || is_within(path, vault.folder());
    return is_volume_root(path) || around_ours ? ERROR_ACCESS_DENIED : ERROR_SUCCESS;
}

/// For a folder that is protected: the folder itself takes an object path, one inside it needs nothing.
void take_object_path(service_state& state, const std::wstring& path, const std::wstring& object_path) {
    for (protected_folder& folder : state.folders) {
        if (same_path(folder.path, path) && !object_path.empty()) {
            folder.object_path = object_path;
        }
    }
}

}  // namespace

folder_copy copy_folder(vault& vault, const std::wstring& folder, problems& left_out) {
    folder_copy copy;
    copy.folder = folder;
    problems unlisted;
    for (const found_entry& entry : walk_folder(folder, vault.folder(), unlisted)) {
        copy_entry(vault, entry, copy, left_out);
    }
    for (const problem& one : unlisted) {
        left_out.push_back({joined(folder, one.path), one.error});
        if (one.path.empty() || is_recordable(one.path)) {
            copy.unlisted.push_back(one.path);
        }
    }
    return copy;
}

stored_copy& add_copy(service_state& state, copy_kind kind) {
    stored_copy& copy = state.copies.emplace_back();
    copy.number = state.next_copy++;
    copy.kind = kind;
    copy.taken_on = now_as_file_time();
    return copy;
}

DWORD protect(vault& vault, const std::wstring& path, const std::wstring& object_path, problems& left_out) {
    if (const DWORD error = check_may_protect(vault, path); error != ERROR_SUCCESS) {
        return error;
    }
    return vault.change([&](service_state& state) -> DWORD {
        if (protection_of(state, path) != nullptr) {
            take_object_path(state, path, object_path);
            return ERROR_SUCCESS;
        }
        std::erase_if(state.folders,
                      [&](const protected_folder& inner) { return is_within(inner.path, path); });
        state.folders.push_back(
            {.path = path, .object_path = object_path, .protected_on = now_as_file_time()});
        folder_copy taken = copy_folder(vault, path, left_out);
        add_copy(state, copy_kind::first).folders.push_back(std::move(taken));
        document_changed(state);
        return ERROR_SUCCESS;
    });
}

DWORD unprotect(vault& vault, const std::wstring& path) {
    return vault.change([&](service_state& state) -> DWORD {
        const std::size_t removed = std::erase_if(
            state.folders, [&](const protected_folder& folder) { return same_path(folder.path, path); });
        if (removed == 0) {
            const std::wstring* rule = rule_of(state, path);
            if (rule == nullptr || !same_path(base_name(path), *rule)) {
                return ERROR_NOT_FOUND;
            }
            state.rules.erase(state.rules.begin() + (rule - state.rules.data()));
        }
        document_changed(state);
        return ERROR_SUCCESS;
    });
}

DWORD take_restore_point(vault& vault, std::int64_t& number, problems& left_out) {
    return vault.change([&](service_state& state) -> DWORD {
        if (state.folders.empty()) {
            return ERROR_NOT_FOUND;
        }
        std::vector<folder_copy> folders;
        for (const protected_folder& folder : state.folders) {
            if (is_plain_folder(folder.path) && !leads_through_link(folder.path)) {
                folders.push_back(copy_folder(vault, folder.path, left_out));
            } else {
                left_out.push_back({folder.path, ERROR_PATH_NOT_FOUND});
            }
        }
        stored_copy& point = add_copy(state, copy_kind::restore_point);
        point.folders = std::move(folders);
        number = point.number;
        return ERROR_SUCCESS;
    });
}

}  // namespace ov::devservice

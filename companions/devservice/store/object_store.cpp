#include "companions/devservice/store/object_store.h"

#include <utility>

#include "companions/devservice/copies/folder_walk.h"
#include "companions/devservice/files/file_io.h"
#include "companions/devservice/files/path.h"
#include "companions/devservice/files/text.h"
#include "companions/devservice/files/unfinished_file.h"
#include "companions/devservice/store/sha256.h"

namespace ov::devservice {
namespace {

// One name is enough: who puts holds the state lock.
constexpr wchar_t incoming_name[] = L"incoming";

std::uint64_t size_of(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data{};
    const bool found = GetFileAttributesExW(long_form(path).c_str(), GetFileExInfoStandard, &data);
    return found ? ULARGE_INTEGER{{data.nFileSizeLow, data.nFileSizeHigh}}.QuadPart : ~std::uint64_t{0};
}

}  // namespace

object_store::object_store(std::wstring folder) : folder_(std::move(folder)) {}

std::wstring object_store::path_of(const std::string& digest) const {
    return joined(folder_, std::wstring(digest.begin(), digest.end()));
}

bool object_store::contains(const std::string& digest) const {
    return is_digest(digest) && attributes_of(path_of(digest)) != INVALID_FILE_ATTRIBUTES;
}

bool object_store::holds(const object& wanted) {
    const std::wstring path = path_of(wanted.digest);
    if (size_of(path) != wanted.size_bytes) {
        return false;
    }
    std::string digest;
    if (!verified_.contains(wanted.digest) && hash_file(path, digest) == ERROR_SUCCESS &&
        digest == wanted.digest) {
        verified_.insert(digest);
    }
    return verified_.contains(wanted.digest);
}

DWORD object_store::put(const std::wstring& file, object& stored) {
    win::unique_file from;
    DWORD error = open_for_reading(file, from);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    // Most files of a restore point have not changed since the copy before it: reading is enough for those.
    object taken;
    error = copy_and_hash(from.get(), INVALID_HANDLE_VALUE, taken.digest, taken.size_bytes);
    if (error == ERROR_SUCCESS && !holds(taken)) {
        error = copy_in(from.get(), taken);
    }
    if (error == ERROR_SUCCESS) {
        stored = std::move(taken);
    }
    return error;
}

DWORD object_store::copy_in(HANDLE from, object& taken) {
    DWORD error = make_folders(folder_);
    const std::wstring incoming = joined(folder_, incoming_name);
    static_cast<void>(remove_file(incoming));  // of a put that was interrupted
    unfinished_file to;
    if (error == ERROR_SUCCESS) {
        error = to.make(incoming);
    }
    if (error != ERROR_SUCCESS) {
        return error;
    }
    // The file may have been written since it was read: the digest is that of what is copied now.
    if (!SetFilePointerEx(from, LARGE_INTEGER{}, nullptr, FILE_BEGIN)) {
        error = GetLastError();
    } else {
        error = copy_and_hash(from, to.get(), taken.digest, taken.size_bytes);
    }
    if (error == ERROR_SUCCESS) {
        error = to.finish();
    }
    return error == ERROR_SUCCESS ? keep(incoming, taken) : error;
}

DWORD object_store::keep(const std::wstring& incoming, const object& taken) {
    if (holds(taken)) {
        return remove_file(incoming);
    }
    const DWORD error = replace_file(incoming, path_of(taken.digest), own_file_patience_ms);
    if (error == ERROR_SUCCESS) {
        verified_.insert(taken.digest);
    }
    return error;
}

void object_store::keep_only(const std::set<std::string>& digests) {
    problems ignored;
    for (const found_entry& entry : walk_folder(folder_, std::wstring(), ignored)) {
        const std::string name = to_utf8_lossy(entry.relative);
        const bool ours = entry.relative == incoming_name || is_digest(name);
        if (ours && entry.kind == entry_kind::file && !digests.contains(name)) {
            static_cast<void>(remove_file(joined(folder_, entry.relative)));
        }
    }
}

DWORD object_store::write_out(const std::string& digest, HANDLE to) const {
    if (!is_digest(digest)) {
        return ERROR_INVALID_DATA;
    }
    win::unique_file from;
    DWORD error = open_for_reading(path_of(digest), from);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    std::string written_digest;
    std::uint64_t size_bytes = 0;
    error = copy_and_hash(from.get(), to, written_digest, size_bytes);
    return error == ERROR_SUCCESS && written_digest != digest ? DWORD{ERROR_CRC} : error;
}

}  // namespace ov::devservice

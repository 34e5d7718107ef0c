#include "companions/devservice/object_store.h"

#include <utility>

#include "companions/devservice/file_io.h"
#include "companions/devservice/path.h"
#include "companions/devservice/sha256.h"

namespace ov::devservice {
namespace {

// One name is enough: who puts holds the state lock.
constexpr wchar_t incoming_name[] = L"incoming";

}  // namespace

object_store::object_store(std::wstring folder) : folder_(std::move(folder)) {}

std::wstring object_store::path_of(const std::string& digest) const {
    return joined(folder_, std::wstring(digest.begin(), digest.end()));
}

bool object_store::contains(const std::string& digest) const {
    return is_digest(digest) && attributes_of(path_of(digest)) != INVALID_FILE_ATTRIBUTES;
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
    if (error == ERROR_SUCCESS && !contains(taken.digest)) {
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
    win::unique_file to;
    if (error == ERROR_SUCCESS) {
        error = create_new_file(incoming, to);
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
    to.reset();
    if (error == ERROR_SUCCESS) {
        error = keep(incoming, taken.digest);
    }
    if (error != ERROR_SUCCESS) {
        static_cast<void>(remove_file(incoming));
    }
    return error;
}

DWORD object_store::keep(const std::wstring& incoming, const std::string& digest) {
    if (contains(digest)) {
        return remove_file(incoming);
    }
    return move_file(incoming, path_of(digest));
}

DWORD object_store::write_out(const std::string& digest, const std::wstring& new_file) const {
    if (!is_digest(digest)) {
        return ERROR_INVALID_DATA;
    }
    win::unique_file from;
    DWORD error = open_for_reading(path_of(digest), from);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    win::unique_file to;
    error = create_new_file(new_file, to);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    std::string written_digest;
    std::uint64_t size_bytes = 0;
    error = copy_and_hash(from.get(), to.get(), written_digest, size_bytes);
    if (error == ERROR_SUCCESS && written_digest != digest) {
        error = ERROR_CRC;
    }
    to.reset();
    if (error != ERROR_SUCCESS) {
        static_cast<void>(remove_file(new_file));
    }
    return error;
}

}  // namespace ov::devservice

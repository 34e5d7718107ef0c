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
    if (error == ERROR_SUCCESS) {
        error = make_folders(folder_);
    }
    if (error != ERROR_SUCCESS) {
        return error;
    }
    const std::wstring incoming = joined(folder_, incoming_name);
    static_cast<void>(remove_file(incoming));  // of a put that was interrupted
    win::unique_file to;
    error = create_new_file(incoming, to);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    object taken;
    error = copy_and_hash(from.get(), to.get(), taken.digest, taken.size_bytes);
    if (error == ERROR_SUCCESS && !FlushFileBuffers(to.get())) {
        error = GetLastError();
    }
    to.reset();
    if (error == ERROR_SUCCESS) {
        error = keep(incoming, taken.digest);
    }
    if (error != ERROR_SUCCESS) {
        static_cast<void>(remove_file(incoming));
        return error;
    }
    stored = std::move(taken);
    return ERROR_SUCCESS;
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
    if (error == ERROR_SUCCESS && !FlushFileBuffers(to.get())) {
        error = GetLastError();
    }
    to.reset();
    if (error != ERROR_SUCCESS) {
        static_cast<void>(remove_file(new_file));
    }
    return error;
}

}  // namespace ov::devservice

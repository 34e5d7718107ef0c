#include "companions/devservice/restored_file.h"

#include "companions/devservice/file_io.h"
#include "companions/devservice/path.h"

namespace ov::devservice {
namespace {

constexpr wchar_t beside_suffix[] = L".orvrestore";

// What a file may be given back; compression, encryption and the like belong to the volume.
constexpr DWORD restorable_attributes = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_HIDDEN |
                                        FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_ARCHIVE |
                                        FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

DWORD set_written_time(const std::wstring& path, std::int64_t written) {
    const win::unique_file file(CreateFileW(long_form(path).c_str(), FILE_WRITE_ATTRIBUTES,
                                            FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                            OPEN_EXISTING, 0, nullptr));
    if (!file) {
        return GetLastError();
    }
    ULARGE_INTEGER ticks{};
    ticks.QuadPart = static_cast<ULONGLONG>(written);
    const FILETIME time{ticks.LowPart, ticks.HighPart};
    return SetFileTime(file.get(), nullptr, nullptr, &time) ? ERROR_SUCCESS : GetLastError();
}

}  // namespace

DWORD write_recorded(const object_store& objects, const file_record& record, const std::wstring& new_file) {
    DWORD error = objects.write_out(record.digest, new_file);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    error = set_written_time(new_file, record.written);
    const DWORD attributes = record.attributes & restorable_attributes;
    if (error == ERROR_SUCCESS && attributes != 0 &&
        !SetFileAttributesW(long_form(new_file).c_str(), attributes)) {
        error = GetLastError();
    }
    if (error != ERROR_SUCCESS) {
        static_cast<void>(remove_file(new_file));
    }
    return error;
}

DWORD replace_with_recorded(const object_store& objects, const file_record& record, const std::wstring& path,
                            const std::wstring& aside) {
    const std::wstring beside = free_name(path + beside_suffix);
    DWORD error = write_recorded(objects, record, beside);
    if (error != ERROR_SUCCESS) {
        return error;
    }
    const bool occupied = attributes_of(path) != INVALID_FILE_ATTRIBUTES;
    if (occupied) {
        error = make_folders(parent_of(aside));
        if (error == ERROR_SUCCESS) {
            error = move_file(path, aside);
        }
    }
    if (error == ERROR_SUCCESS) {
        error = move_file(beside, path);
        if (error != ERROR_SUCCESS && occupied) {
            static_cast<void>(move_file(aside, path));
        }
    }
    if (error != ERROR_SUCCESS) {
        static_cast<void>(remove_file(beside));
    }
    return error;
}

}  // namespace ov::devservice
